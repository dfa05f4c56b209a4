#include "Commands/ScanReport.h"
#include "Scan/Coverage.h"
#include "Scan/VolumeInfo.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

namespace orbel {
namespace {

using nlohmann::json;
using test::runOrbel;
using test::TemporaryFolder;

json reportOf(const std::vector<std::string>& words) {
    const auto run = runOrbel(words);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_TRUE(run.output.ends_with("}\n"));
    return json::parse(run.output);
}

std::vector<std::string> keysOf(const json& object) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : object.items())
        keys.push_back(key);
    return keys;
}

TEST(ScanReport, HoldsWhatWasMeasured) {
    const TemporaryFolder home;
    home.file("small/file", 10'000);
    home.file("large/file", 100'000);
    home.file("empty", 0);
    const json report = reportOf({"--scan-json", home.path() + "/."});

    EXPECT_EQ(keysOf(report),
              (std::vector<std::string>{"allocatedBytes", "cancelled", "children", "cloudFilesNotDownloaded",
                                        "durationSeconds", "entries", "firstProgressSeconds",
                                        "notMeasuredBytes", "otherVolumesSkipped", "peakFootprintBytes",
                                        "root", "unreadable", "volume"}));
    EXPECT_EQ(report["root"], home.path() + "/.") << "as it was given";
    EXPECT_EQ(report["entries"], 6);
    EXPECT_EQ(report["cancelled"], false);
    EXPECT_GT(report["peakFootprintBytes"], 1'000'000);
    ASSERT_EQ(report["children"].size(), 3);
    const json& first = report["children"][0];
    EXPECT_EQ(first["path"], home.path("large"));
    EXPECT_EQ(first["isFolder"], true);
    EXPECT_EQ(first["hasHardLinks"], false);
    const std::uint64_t small = report["children"][1]["allocatedBytes"];
    EXPECT_EQ(report["allocatedBytes"], first["allocatedBytes"].get<std::uint64_t>() + small);
    EXPECT_EQ(keysOf(report["volume"]),
              (std::vector<std::string>{"availableForImportantUsage", "free", "otherVolumes", "purgeable",
                                        "total", "used"}));
    EXPECT_EQ(report["notMeasuredBytes"],
              report["volume"]["used"].get<std::uint64_t>() - report["allocatedBytes"].get<std::uint64_t>());
}

TEST(ScanReport, ListsAsManyChildrenAsAskedFor) {
    const TemporaryFolder home;
    for (int i = 0; i < 25; ++i)
        home.file("file" + std::to_string(i), 10);
    const auto listed = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"--scan-json", home.path()});
        return reportOf(words)["children"].size();
    };
    EXPECT_EQ(listed({}), 20);
    EXPECT_EQ(listed({"--top", "3"}), 3);
    EXPECT_EQ(listed({"--top", "0"}), 0);
    EXPECT_EQ(listed({"--top", "-1"}), 0);
    EXPECT_EQ(listed({"--top", "100"}), 25);
    EXPECT_EQ(listed({"--top", "many", "--unknown"}), 20);
    EXPECT_EQ(listed({"--top"}), 20);
}

TEST(ScanReport, NestsChildrenToTheDepth) {
    const TemporaryFolder home;
    home.file("a/inner/x", 300'000);
    home.hardLink("b/y", "a/inner/x");
    home.file("a/small", 5000);
    home.file("a/smaller", 1000);
    const json plain = reportOf({"--scan-json", home.path()});
    const json one = reportOf({"--scan-json", home.path(), "--depth", "1"});
    const json two = reportOf({"--scan-json", home.path(), "--depth", "2", "--top", "2"});
    ASSERT_EQ(plain["children"].size(), 2);
    EXPECT_EQ(keysOf(plain), keysOf(two)) << "the document itself stays as it is";
    auto stripped = one["children"];
    for (auto& child : stripped)
        EXPECT_EQ(child.erase("entries"), 1);
    EXPECT_EQ(stripped, plain["children"]);
    EXPECT_EQ(keysOf(plain["children"][0]),
              (std::vector<std::string>{"allocatedBytes", "hasHardLinks", "isFolder", "path"}));

    const json& a = two["children"][0];
    EXPECT_EQ(a["entries"], 5);
    ASSERT_EQ(a["children"].size(), 2) << "N in each folder";
    const json& inner = a["children"][0];
    EXPECT_EQ(inner["path"], home.path("a/inner"));
    EXPECT_EQ(keysOf(inner), (std::vector<std::string>{"allocatedBytes", "entries", "isFolder", "path"}));
    EXPECT_EQ(inner["entries"], 2);
    EXPECT_EQ(keysOf(a["children"][1]), (std::vector<std::string>{"allocatedBytes", "isFolder", "path"}));

    const json large = reportOf({"--scan-json", home.path(), "--depth", "9", "--min-bytes", "100000"});
    ASSERT_EQ(large["children"].size(), 1);
    EXPECT_EQ(large["children"][0]["children"][0]["children"][0]["path"], home.path("a/inner/x"));
    EXPECT_EQ(runOrbel({"--scan-json", home.path(), "--depth", "none"}).status, 2);
}

TEST(ScanReport, MarksChildrenThatShareHardLinks) {
    const TemporaryFolder home;
    home.file("a/inner/x", 5000);
    home.hardLink("b/y", "a/inner/x");
    home.file("c/one", 5000);
    home.hardLink("c/deep/two", "c/one");
    const json report = reportOf({"--scan-json", home.path()});
    for (const auto& child : report["children"])
        EXPECT_EQ(child["hasHardLinks"], child["path"] != home.path("c")) << child;
}

TEST(ScanReport, IsTrueOfRootsThatGiveNothing) {
    const TemporaryFolder home;
    const json empty = reportOf({"--scan-json", home.folder("empty")});
    EXPECT_EQ(empty["allocatedBytes"], 0);
    EXPECT_EQ(empty["entries"], 1);
    EXPECT_EQ(empty["children"], json::array());
    EXPECT_EQ(empty["firstProgressSeconds"], -1);

    const json missing = reportOf({"--scan-json", home.path("missing")});
    EXPECT_EQ(missing["entries"], 0);
    EXPECT_EQ(missing["allocatedBytes"], 0);
    EXPECT_FALSE(missing.contains("volume"));
    EXPECT_FALSE(missing.contains("notMeasuredBytes"));

    home.file("bad\xFFname", 1000);
    const json odd = reportOf({"--scan-json", home.path()});
    EXPECT_EQ(odd["children"][0]["path"], home.path("bad\uFFFDname"));
}

TEST(ScanReport, IsWholeWithFewDescriptors) {
    const TemporaryFolder home;
    for (int wide = 0; wide < 400; ++wide)
        home.file("wide/" + std::to_string(wide) + "/file", 10);
    for (int chain = 0; chain < 30; ++chain) {
        auto folder = "deep/" + std::to_string(chain);
        for (int level = 0; level < 30; ++level) {
            home.file(folder + "/beside/file", 10);
            folder += "/in";
        }
    }
    const auto figures = [&](const std::string& limit) {
        const auto run =
            test::runProgram({"sh", "-c", "ulimit -n " + limit + " && exec \"$0\" --scan-json \"$1\"",
                              ORBEL_PROGRAM, home.path()});
        EXPECT_EQ(run.status, 0);
        const auto report = json::parse(run.output);
        return std::vector<json>{report["entries"], report["allocatedBytes"], report["unreadable"]};
    };
    const auto whole = figures("1024");
    EXPECT_EQ(whole.back(), 0);
    for (const auto* limit : {"20", "24", "32", "64"})
        EXPECT_EQ(figures(limit), whole) << limit;
}

TEST(ScanReport, DoesNotCallAFolderUnreadableThatWentWhileItWasOpen) {
    const TemporaryFolder home;
    home.folder("root/brief");
    // The first two calls list the root.
    const auto run = test::runProgram({"strace", "-f", "-o", home.path("trace"), "-e", "trace=getdents64",
                                       "-e", "inject=getdents64:error=ENOENT:when=3", ORBEL_PROGRAM,
                                       "--scan-json", home.path("root")});
    const auto report = json::parse(run.output);
    EXPECT_EQ(report["unreadable"], 0);
    EXPECT_EQ(report["entries"], 1);
}

TEST(ScanReport, TellsTheSameOfAScanThatWasKept) {
    const TemporaryFolder home;
    home.file("data/large/file", 100'000);
    home.file("data/\xFF/file", 10'000);
    const auto file = home.path("kept.scan");
    auto report = reportOf({"--scan-json", home.path("data"), "--save", file, "--exclude", "nothing"});
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    const auto piped = runOrbel({"--scan-json", home.path("data"), "--save", "-"});
    EXPECT_EQ(piped.status, 0);
    home.file("piped.scan", piped.output);

    std::filesystem::remove_all(home.path("data"));
    for (const auto* name : {"kept.scan", "piped.scan"}) {
        const auto kept = reportOf({"--scan-json", home.path(name)});
        for (const auto* key : {"allocatedBytes", "entries", "children", "unreadable", "otherVolumesSkipped"})
            EXPECT_EQ(kept[key], report[key]) << name << " " << key;
        EXPECT_EQ(kept["keptScan"]["root"], home.path("data"));
        EXPECT_EQ(kept["volume"]["total"], report["volume"]["total"]);
    }
    EXPECT_EQ(reportOf({"--scan-json", file})["excluded"], report["excluded"]);
    const auto copied = reportOf({"--scan-json", file, "--save", home.path("copy.scan")});
    EXPECT_EQ(reportOf({"--scan-json", home.path("copy.scan")})["keptScan"], copied["keptScan"]);
    EXPECT_TRUE(runOrbel({"--map-svg", file, "-"}).output.contains(home.path("data")));

    for (const std::vector<std::string>& words :
         {std::vector<std::string>{file, "--exclude", "x"}, {file, "--growth"}}) {
        auto line = words;
        line.insert(line.begin(), "--scan-json");
        EXPECT_EQ(runOrbel(line).status, 2) << words.back();
    }
    home.file("damaged.scan", piped.output.substr(0, 300));
    for (const auto* command : {"--scan-json", "--map-svg"}) {
        const auto run = runOrbel({command, home.path("damaged.scan"), "-"});
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_TRUE(run.errors.contains("damaged.scan: The scan file is damaged")) << run.errors;
    }
    EXPECT_EQ(runOrbel({"--scan-json", home.path("gone"), "--save", home.path("none.scan")}).status, 1);
    EXPECT_FALSE(std::filesystem::exists(home.path("none.scan")));
    EXPECT_EQ(runOrbel({"--scan-json", home.path(), "--save", home.path("no/such/folder")}).status, 1);
}

} // namespace
} // namespace orbel
