#include "Support/ProgramHome.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orbel {
namespace {

using nlohmann::json;
using test::ProgramHome;

constexpr std::size_t million = 1'000'000;

TEST(CompareCommand, ListsWhatChangedSinceTheScanThatWasKept) {
    const ProgramHome home;
    const auto data = home.folder("data");
    home.file("data/films/a", 3 * million);
    home.file("data/old/b", million);
    home.file("data/old/c", million);
    home.file("data/notes", 2000);
    const auto none = home.run({"--compare-json", data});
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(none.errors.contains("No scan of it is kept")) << none.errors;
    home.json({"--scan-json", data, "--growth"}, 0);
    EXPECT_EQ(home.json({"--compare-json", data}, 0)["rows"], json::array());

    home.file("data/films/b", 2 * million);
    std::filesystem::rename(home.path("data/old"), home.path("data/new\xFF"));
    std::filesystem::remove(home.path("data/notes"));
    const auto report = home.json({"--compare-json", data + "/.", data}, 0);
    std::vector<std::string> rows;
    for (const auto& row : report["rows"])
        rows.push_back(row["change"].get<std::string>() + " "
                       + row["path"].get<std::string>().substr(data.size()));
    EXPECT_EQ(rows, (std::vector<std::string>{"grew /films", "came /films/b", "grew ", "went /notes",
                                              "moved /new\uFFFD"}));
    const auto& moved = report["rows"][4];
    EXPECT_EQ(moved["pathBefore"], home.path("data/old"));
    EXPECT_TRUE(moved.contains("pathBytes"));
    EXPECT_EQ(moved["bytesBefore"], moved["bytesAfter"]);
    EXPECT_EQ(moved["isFolder"], true);
    EXPECT_EQ(report["rows"][3]["bytesAfter"], 0);
    EXPECT_EQ(report["from"]["root"], data);
    EXPECT_GT(report["to"]["allocatedBytes"], report["from"]["allocatedBytes"]);

    // The same with files, which may be of another machine.
    const auto file = home.path("now.scan");
    home.json({"--scan-json", data, "--save", file}, 0);
    auto again = home.json({"--compare-json", data, file, "--top", "2"}, 0);
    EXPECT_EQ(again["rows"].size(), 2);
    EXPECT_EQ(again["rows"][1], report["rows"][1]);
    EXPECT_EQ(home.json({"--compare-json", file, file}, 0)["rows"], json::array());
    EXPECT_EQ(home.run({"--compare-json", file, data, "--exclude", "a"}).status, 2);
    EXPECT_EQ(home.run({"--compare-json", data, home.path("missing")}).status, 1);
}

TEST(GrowthReport, IsAddedOnlyWhenAskedFor) {
    const ProgramHome home;
    home.file("data/films/a", 3 * million);
    const auto scans = home.path(".local/share/Ostrevo Orbel/scans");
    EXPECT_FALSE(home.json({"--scan-json", home.path("data")}, 0).contains("growth"));
    struct stat status {};
    EXPECT_NE(::stat(scans.c_str(), &status), 0) << "nothing is written";

    const auto first = home.json({"--scan-json", home.path("data"), "--growth"}, 0)["growth"];
    EXPECT_EQ(first, (json{{"since", nullptr}, {"folders", json::array()}}));
    home.file("data/films/b", 2 * million);
    const auto second = home.json({"--scan-json", home.path("data") + "/.", "--growth"}, 0)["growth"];
    EXPECT_TRUE(parseIso8601(second["since"].get<std::string>()));
    ASSERT_EQ(second["folders"].size(), 1);
    EXPECT_EQ(second["folders"][0]["path"], home.path("data/films"));
    EXPECT_GE(second["folders"][0]["grownBytes"], 2 * million);
    EXPECT_GE(second["folders"][0]["allocatedBytes"], 5 * million);

    const ProgramHome blocked;
    blocked.file(".local/share/Ostrevo Orbel/scans");
    const auto failed = blocked.run({"--scan-json", blocked.folder("data"), "--growth"});
    EXPECT_EQ(failed.status, 1) << "a scan that could not be kept";
    EXPECT_TRUE(json::parse(failed.output)["growth"]["since"].is_null());
    EXPECT_TRUE(failed.errors.contains("could not be kept"));
}

} // namespace
} // namespace orbel
