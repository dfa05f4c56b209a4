#include "Support/ProgramHome.h"
#include "Util/Iso8601.h"

#include <filesystem>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::ProgramHome;
using Names = std::vector<std::string>;
using Words = std::vector<std::string>;

Names namesIn(const json& rows) {
    Names names;
    for (const auto& row : rows)
        names.push_back(fs::path(row.at("path").get<std::string>()).filename());
    return names;
}

/// Lets it look as if nobody had touched it for 400 days.
std::string aged(const std::string& path) {
    const timespec then{.tv_sec = std::time(nullptr) - 400L * 24 * 60 * 60, .tv_nsec = 0};
    const std::array times{then, then};
    EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
    return path;
}

/// The bytes that a list gives beside a text with replacement characters, as base64(1) reads them.
std::string bytesOf(const json& row, const std::string& key) {
    const std::string text = row.at(key + "Bytes");
    return test::runProgram({"sh", "-c", "printf %s \"$0\" | base64 -d", text}).output;
}

TEST(Exclude, IsInNoListAndInEveryReport) {
    const ProgramHome home;
    for (const auto* copy : {"docs/in/one.iso", "docs/in/out/one.iso", "docs/in/two.iso"})
        home.file(copy, std::string(1'200'000, 'x'));
    home.folder("docs/in/holder/out");
    home.folder("docs/in/holder/inner");
    home.link("docs/in/out.link", "gone");
    const auto none = home.json({"--large-json", home.path(), "--min-bytes", "0", "--unused-days", "0"}, 0);
    EXPECT_FALSE(none.contains("excluded"));

    const json excluded{{"count", 3}, {"patterns", {"out", "*.link"}}};
    const auto report = [&](Words words) {
        words.insert(words.begin() + 1, {home.path(), "--exclude", "out", "--exclude=*.link"});
        auto made = home.json(words, 0);
        EXPECT_EQ(made.at("excluded"), excluded) << words.front();
        return made;
    };
    EXPECT_EQ(namesIn(report({"--large-json", "--min-bytes", "0", "--unused-days", "0"})["files"]),
              (Words{"one.iso", "two.iso"}));
    EXPECT_EQ(report({"--duplicates-json"})["groups"][0]["files"],
              (json{home.path("docs/in/one.iso"), home.path("docs/in/two.iso")}));
    const auto tidy = report({"--tidy-json"});
    EXPECT_EQ(namesIn(tidy["emptyFolders"]), (Words{"inner"}));
    EXPECT_TRUE(tidy["brokenShortcuts"].empty());
    const auto scan = report({"--scan-json"});
    EXPECT_FALSE(scan["children"][0].contains("isExcluded"));
    EXPECT_EQ(scan["allocatedBytes"], 2 * test::blocksOf(home.path("docs/in/one.iso")));
    const auto map = home.run({"--map-svg", home.path(), "-", "--exclude", "out"});
    EXPECT_TRUE(map.output.contains(" · 2 left out · measured ")) << map.output.substr(0, 2000);
}

TEST(LargeCommand, ListsByItsFilters) {
    const ProgramHome home;
    aged(home.file("docs/old.iso", 300'000));
    aged(home.file("docs/older\xFF.mp4", 200'000));
    home.file("docs/new.zip", 400'000);
    aged(home.file("docs/small", 1000));
    const auto listed = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"--large-json", home.path(), "--min-bytes", "100000"});
        return home.json(words, 0);
    };
    const auto old = listed({});
    EXPECT_EQ(namesIn(old["files"]), (Names{"old.iso", "older\uFFFD.mp4"}));
    EXPECT_EQ(namesIn(listed({"--unused-days", "500"})["files"]), Names());
    const auto all = listed({"--unused-days", "0"});
    EXPECT_EQ(namesIn(all["files"]), (Names{"new.zip", "old.iso", "older\uFFFD.mp4"}));
    EXPECT_EQ(all["unusedForSeconds"], nullptr);

    const auto& first = old["files"][0];
    EXPECT_EQ(first["kind"], "diskImage");
    EXPECT_EQ(first["lastUsed"]["source"], "lastModified");
    EXPECT_TRUE(parseIso8601(first["lastUsed"]["date"].get<std::string>()));
    EXPECT_EQ(first["openBy"], json::array());
    EXPECT_FALSE(first.contains("blockedReason"));
    EXPECT_EQ(old["files"][1]["blockedReason"], "Its name is not valid text, so it could not be put back");
    EXPECT_FALSE(first.contains("pathBytes"));
    EXPECT_EQ(bytesOf(old["files"][1], "path"), home.path("docs/older\xFF.mp4"));
    EXPECT_EQ(old["bytes"], first["bytes"].get<int>() + old["files"][1]["bytes"].get<int>());

    for (const auto* bad : {"many", "-1", "1.5"})
        EXPECT_EQ(home.run({"--large-json", home.path(), "--min-bytes", bad}).status, 2) << bad;
    EXPECT_EQ(home.run({"--large-json", home.path(), "--unused-days"}).status, 2);
}

TEST(TidyCommand, ListsBothKindsAndChangesNothing) {
    const ProgramHome home;
    aged(home.folder("docs/empty"));
    home.link("docs/b", "nowhere");
    home.link("docs/a", "a");
    const auto report = home.json({"--tidy-json", "."}, 0);
    EXPECT_EQ(namesIn(report["emptyFolders"]), Names{"empty"});
    EXPECT_EQ(report["emptyFolders"][0]["preselected"], true);
    EXPECT_EQ(namesIn(report["brokenShortcuts"]), (Names{"a", "b"}));
    EXPECT_EQ(report["brokenShortcuts"][0]["state"], "unknown");
    EXPECT_EQ(report["brokenShortcuts"][1]["target"], "nowhere");
    EXPECT_EQ(report, home.json({"--tidy-json", "."}, 0)) << "the same twice in a row";

    home.link("odd\xFF/link", "to\xFE");
    const auto odd = home.json({"--tidy-json", "odd\xFF"}, 0);
    EXPECT_EQ(bytesOf(odd, "root"), "odd\xFF");
    EXPECT_EQ(bytesOf(odd["brokenShortcuts"][0], "path"), home.path("odd\xFF/link"));
    EXPECT_EQ(bytesOf(odd["brokenShortcuts"][0], "target"), "to\xFE");
    EXPECT_FALSE(fs::exists(home.path(".local"))) << "neither a journal nor a Trash is made";
}

TEST(TidyCommand, WhatItListsCanBeMovedByItsPathAndPutBack) {
    const ProgramHome home;
    const auto gone = home.file(".config/autostart/gone.desktop",
                                "[Desktop Entry]\nType=Application\nName=x\nExec=/nowhere/x\n");
    const auto fine =
        home.file(".config/autostart/fine.desktop", "[Desktop Entry]\nType=Application\nName=x\nExec=sh\n");
    const auto rows = home.json({"--tidy-json", home.path()}, 0)["brokenShortcuts"];
    ASSERT_EQ(namesIn(rows), Names{"gone.desktop"});
    EXPECT_FALSE(rows[0].contains("blockedReason"));
    const auto report = home.json({"--trash", gone, fine}, 1);
    EXPECT_EQ(namesIn(report["moved"]), Names{"gone.desktop"});
    EXPECT_EQ(namesIn(report["skipped"]), Names{"fine.desktop"}) << "a launcher that works stays";
    EXPECT_FALSE(fs::exists(gone));
    EXPECT_EQ(home.entries().at(0).module, DeletionModule::brokenShortcuts);
    home.json({"--put-back", "last"}, 0);
    EXPECT_TRUE(fs::exists(gone));
}

} // namespace
} // namespace orbel
