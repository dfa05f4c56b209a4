#include "Support/ProgramHome.h"

#include <filesystem>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orbel {
namespace {

using nlohmann::json;

/// The lines of one application in a dry run.
std::string sectionOf(const std::string& text, const std::string& name) {
    const auto start = text.find("\n## " + name + "  [");
    const auto end = start == std::string::npos ? start : text.find("\n\n", start);
    return start == std::string::npos ? ""
                                      : text.substr(start + 1, end == std::string::npos ? end : end - start);
}

class AppsCommandTest : public ::testing::Test {
protected:
    AppsCommandTest() {
        const auto program = home.file("opt/Orbelsample/run");
        ::chmod(program.c_str(), 0755);
        home.file(".local/share/applications/org.orbeltest.Sample.desktop",
                  "[Desktop Entry]\nType=Application\nName=Sam\\sple\nExec=\"" + program + "\" %U\n");
        home.file(".cache/org.orbeltest.Sample/x", 100);
        home.file(".config/org.orbeltest.Sample/x", 100);
    }
    test::ProgramHome home;
};

TEST_F(AppsCommandTest, PrintsTheInventory) {
    const auto apps = home.json({"--apps-json"}, 0).at("apps");
    const auto found = std::ranges::find_if(apps, [](const json& app) { return app["name"] == "Sam ple"; });
    ASSERT_NE(found, apps.end());
    EXPECT_EQ(*found, (json{{"id", "org.orbeltest.Sample"},
                            {"name", "Sam ple"},
                            {"path", home.path("opt/Orbelsample")},
                            {"source", "Unpacked folder"},
                            {"status", "removable"}}));
    EXPECT_EQ(home.json({"--apps-json"}, 0).at("apps"), apps) << "the order is stable";
}

TEST_F(AppsCommandTest, PrintsWhatCommandsOfTheSystemFree) {
    // What there is depends on the system that this runs on.
    const auto report = home.json({"--system-json"}, 0);
    for (const auto& place : report.at("places")) {
        EXPECT_TRUE(place.at("path").get<std::string>().starts_with('/')) << place;
        EXPECT_GE(place.at("bytes").get<std::uint64_t>(), 100'000'000U) << place;
        EXPECT_TRUE(place.at("upTo").is_boolean()) << place;
        EXPECT_FALSE(place.at("what").get<std::string>().empty()
                     || place.at("command").get<std::string>().empty())
            << place;
    }
}

TEST_F(AppsCommandTest, PrintsWhatWouldGoAndMovesNothing) {
    const auto run = home.run({"--scan-json", "/nowhere", "--leftovers-dry-run", "--apps-json"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    const auto count = home.json({"--apps-json"}, 0).at("apps").size();
    EXPECT_TRUE(run.output.starts_with(
        "# Leftovers dry run (read-only) — " + std::to_string(count)
        + " apps. [ok] = selectable; otherwise the gate's or the plan's reason.\n\n## "));
    EXPECT_EQ(sectionOf(run.output, "Sam ple"),
              "## Sam ple  [removable]  org.orbeltest.Sample\n"
              "   [ok] "
                  + home.path("opt/Orbelsample") + "  — The whole folder goes with it"
                  + "\n"
                    "   [ok] "
                  + home.path(".local/share/applications/org.orbeltest.Sample.desktop")
                  + "\n"
                    "   [ok, pre-selected] "
                  + home.path(".cache/org.orbeltest.Sample")
                  + "\n"
                    "   [ok] "
                  + home.path(".config/org.orbeltest.Sample") + "\n");
    EXPECT_TRUE(std::filesystem::exists(home.path("opt/Orbelsample/run")));
    EXPECT_FALSE(std::filesystem::exists(home.trash()));
}

TEST_F(AppsCommandTest, PrintsTheSameAsJsonAndWhatRemovedOnesLeft) {
    home.file(".cache/org.orbeltest.Gone/x", 90'000);
    home.file(".config/org.orbeltest.Gone/x", 100);
    home.file("snap/orbeltest-gone/1/x", 500'000);
    const auto report = home.json({"--leftovers-json"}, 0);
    const auto apps = report.at("apps");
    EXPECT_EQ(apps.size(), home.json({"--apps-json"}, 0).at("apps").size());
    const auto sample = std::ranges::find_if(apps, [](const json& app) { return app["name"] == "Sam ple"; });
    ASSERT_NE(sample, apps.end());
    EXPECT_EQ(sample->at("items").size(), 4);
    const auto cache = sample->at("items")[2];
    EXPECT_EQ(cache["path"], home.path(".cache/org.orbeltest.Sample"));
    EXPECT_TRUE(cache["preselected"] && cache["bytes"] > 0 && cache["evidence"].is_string());

    const auto removed = report.at("removed");
    ASSERT_EQ(removed.size(), 2) << removed;
    EXPECT_EQ(removed[0]["kind"], "snap");
    EXPECT_EQ(removed[0]["items"][0]["preselected"], false);
    EXPECT_EQ(removed[1]["id"], "org.orbeltest.Gone");
    EXPECT_EQ(removed[1]["kind"], "id");
    for (const auto& item : removed[1]["items"]) {
        EXPECT_EQ(item["preselected"], item["path"] == home.path(".cache/org.orbeltest.Gone"));
        EXPECT_TRUE(item["evidence"].get<std::string>().contains("whole id"));
    }
}

} // namespace
} // namespace orbel
