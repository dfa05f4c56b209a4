#include "Support/ProgramHome.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

using nlohmann::json;
using test::ProgramHome;

/// A home with all that programs of this kind have to agree about.
class OpenedScan : public testing::Test {
protected:
    OpenedScan() {
        for (int i = 0; i < 60; ++i)
            home.file("data/" + std::to_string(i % 7) + "/" + std::to_string(i) + "\xFF\n\"",
                      std::size_t{1000} * static_cast<unsigned>(i));
        home.hardLink("data/again", "data/0/0\xFF\n\"");
        home.hardLink("data/3/again", "data/1/57\xFF\n\"");
        std::filesystem::resize_file(home.file("data/holes", 10), 50'000'000);
        home.link("data/link", "gone");
        home.folder("data/empty/inner");
        home.folder("data/.hidden/inner");
    }

    void runIn(const std::string& command) const {
        const auto run = test::runProgram({"sh", "-c", "cd \"$0\" && " + command, home.path()});
        ASSERT_EQ(run.status, 0) << command << run.errors;
    }

    /// The same totals as those of the folder itself, made now.
    void expectSameTotals(const std::string& file, const std::string& program) const {
        const auto measured = home.json({"--scan-json", home.path("data")}, 0);
        const auto opened = home.json({"--scan-json", home.path(file)}, 0);
        for (const auto* key : {"allocatedBytes", "entries", "unreadable", "otherVolumesSkipped"})
            EXPECT_EQ(opened.at(key), measured.at(key)) << file << " " << key;
        EXPECT_EQ(opened["keptScan"]["root"], home.path("data"));
        EXPECT_EQ(opened["keptScan"]["machine"], nullptr);
        EXPECT_TRUE(opened["keptScan"]["program"].get<std::string>().starts_with(program)) << opened;
        EXPECT_FALSE(opened.contains("volume"));
    }

    const ProgramHome home;
    const std::uint64_t folders = 7 + 5; ///< the numbered ones, the empty and hidden ones, and the root
};

TEST_F(OpenedScan, AgreesWithNcduBothWays) {
    if (test::runProgram({"ncdu", "--version"}).status != 0)
        GTEST_SKIP() << "ncdu is not installed";
    runIn("ncdu -0 -o plain.json data </dev/null && ncdu -0 -e -o more.json data </dev/null"
          " && gzip -k plain.json && gzip -k more.json");
    for (const auto* file : {"plain.json", "more.json", "plain.json.gz", "more.json.gz"})
        expectSameTotals(file, "ncdu ");
    runIn("ncdu -0 --exclude 3 -o less.json data </dev/null");
    const auto less = home.json({"--scan-json", home.path("less.json")}, 0);
    EXPECT_EQ(less["excluded"], (json{{"count", 1}, {"patterns", json::array()}}));

    // What it does not tell is not made up.
    const auto tidy = home.json({"--tidy-json", home.path("plain.json")}, 0);
    ASSERT_EQ(tidy["emptyFolders"].size(), 1U) << tidy;
    EXPECT_EQ(tidy["emptyFolders"][0]["changed"], nullptr);
    const json all = home.json(
        {"--large-json", home.path("plain.json"), "--min-bytes", "50000", "--unused-days", "0"}, 0)["files"];
    ASSERT_EQ(all.size(), 10U);
    EXPECT_EQ(all[0]["lastUsed"], nullptr);
    EXPECT_TRUE(
        home.json({"--large-json", home.path("plain.json"), "--min-bytes", "50000"}, 0)["files"].empty());
}

TEST_F(OpenedScan, AgreesWithGduBothWays) {
    if (test::runProgram({"gdu", "--version"}).status != 0)
        GTEST_SKIP() << "gdu is not installed";
    runIn("gdu --config-file /dev/null -n -p -o theirs.json data && gzip -k theirs.json");
    for (const auto* file : {"theirs.json", "theirs.json.gz"})
        expectSameTotals(file, "gdu ");
    ASSERT_EQ(home.run({"--export-ncdu", home.path("data"), home.path("ours.json")}).status, 0);
    const auto total = test::runProgram(
        {"gdu", "--config-file", "/dev/null", "-n", "-p", "-s", "--no-prefix", "-f", home.path("ours.json")});
    const auto bytes =
        home.json({"--scan-json", home.path("data")}, 0)["allocatedBytes"].get<std::uint64_t>();
    EXPECT_EQ(std::stoull(total.output), bytes + 4096 * folders) << "it counts 4096 for each folder";
}

TEST_F(OpenedScan, IsListedWithoutALookAtTheDisk) {
    ASSERT_EQ(home.run({"--scan-json", home.path("data"), "--save", home.path("kept.scan")}).status, 0);
    std::filesystem::remove_all(home.path("data"));
    const auto tidy = home.json({"--tidy-json", home.path("kept.scan")}, 0);
    ASSERT_EQ(tidy["emptyFolders"].size(), 1U) << tidy;
    EXPECT_EQ(tidy["emptyFolders"][0]["path"], home.path("data/empty"));
    EXPECT_EQ(tidy["emptyFolders"][0]["emptyFolders"], 2);
    EXPECT_EQ(tidy["emptyFolders"][0]["preselected"], false);
    EXPECT_EQ(tidy["brokenShortcuts"], nullptr);
    EXPECT_EQ(tidy["keptScan"]["root"], home.path("data"));

    const auto large = [&](const std::string& days) {
        return home.json(
            {"--large-json", home.path("kept.scan"), "--min-bytes", "50000", "--unused-days", days}, 0);
    };
    const auto files = large("0")["files"];
    ASSERT_EQ(files.size(), 10U);
    EXPECT_EQ(files[0]["lastUsed"]["record"], "modificationTime");
    EXPECT_FALSE(files[0].contains("openBy") || files[0].contains("blockedReason"));
    EXPECT_TRUE(std::ranges::any_of(files, [](const json& file) { return file.contains("note"); }))
        << "of the hard link";
    EXPECT_TRUE(large("1")["files"].empty());
    for (const auto* command : {"--duplicates-json", "--rebuildable-json"}) {
        const auto run = home.run({command, home.path("kept.scan")});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_TRUE(run.errors.contains("so it needs the disk: give a folder")) << run.errors;
    }
    EXPECT_EQ(home.run({"--large-json", home.path("kept.scan"), "--exclude", "x"}).status, 2);
    home.file("cut.json", "[1,2,{},\n[{\"name\":\"/a\"},");
    const auto cut = home.run({"--tidy-json", home.path("cut.json")});
    EXPECT_EQ(cut.status, 1);
    EXPECT_EQ(cut.errors, "orbel: " + home.path("cut.json") + ": The export ends too early\n");
    home.file("numbers.json", "[1,2,3]");
    EXPECT_EQ(home.json({"--large-json", home.path("numbers.json"), "--min-bytes", "1"}, 0)["files"].size(),
              0U);
}

} // namespace
} // namespace orbel
