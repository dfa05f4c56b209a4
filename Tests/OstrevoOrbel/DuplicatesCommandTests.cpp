#include "Support/ProgramHome.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

using nlohmann::json;
using test::ProgramHome;

TEST(DuplicatesCommand, PrintsTheGroupsAsJson) {
    const ProgramHome home;
    home.file("a/film", std::string(1'000'000, 'x'));
    home.file("film copy", std::string(1'000'000, 'x'));
    home.file("b/big \xFF", std::string(3'000'000, 'y'));
    home.file("big", std::string(3'000'000, 'y'));
    home.file("c/small", std::string(999'999, 'z'));
    home.file("c/small copy", std::string(999'999, 'z'));
    auto report = home.json({"--scan-json", home.path(), "--duplicates-json", home.path() + "/."}, 0);
    for (auto& group : report["groups"]) {
        auto& files = group["files"];
        EXPECT_NE(std::find(files.begin(), files.end(), group["suggestedKeep"]), files.end());
        std::sort(files.begin(), files.end());
        group.erase("suggestedKeep");
    }
    EXPECT_EQ(report,
              (json{{"groups",
                     {{{"bytes", 3'000'000}, {"files", {home.path("b/big \uFFFD"), home.path("big")}}},
                      {{"bytes", 1'000'000}, {"files", {home.path("a/film"), home.path("film copy")}}}}}}));

    const json nothing{{"groups", json::array()}};
    EXPECT_EQ(home.json({"--duplicates-json", home.path("a")}, 0), nothing);
    EXPECT_EQ(home.json({"--duplicates-json", "/etc"}, 0), nothing) << "outside the home";
    EXPECT_EQ(home.json({"--duplicates-json", home.path("missing")}, 0), nothing);
    EXPECT_TRUE(home.json({"--scan-json", home.path(), "--duplicates-json"}, 0).contains("children"))
        << "without its value it is no command";
}

TEST(DuplicatesCommand, DetailsTellWhatComesFree) {
    const ProgramHome home;
    home.file("docs/full", std::string(2'000'000, '\0'));
    for (const auto* name : {"docs/holes", "docs/more holes"})
        std::filesystem::resize_file(home.file(name, ""), 2'000'000);
    const auto report = home.json({"--duplicates-json", home.path("docs"), "--details"}, 0);
    EXPECT_EQ(report["searched"], home.path("docs"));
    ASSERT_EQ(report["groups"].size(), 1);
    const json& group = report["groups"][0];
    EXPECT_EQ(group["bytes"], 2'000'000);
    std::uint64_t frees = 0;
    ASSERT_EQ(group["copies"].size(), 3);
    for (const json& copy : group["copies"]) {
        const std::string path = copy["path"];
        EXPECT_EQ(copy["bytesOnDisk"] > 1'000'000, path == home.path("docs/full")) << copy;
        EXPECT_EQ(copy["mayShareStorage"], false);
        EXPECT_TRUE(copy.contains("modified"));
        EXPECT_FALSE(copy.contains("blockedReason")) << copy;
        frees += group["suggestedKeep"] == path ? 0 : copy["bytesOnDisk"].get<std::uint64_t>();
    }
    EXPECT_EQ(group["frees"], (json{{"least", frees}, {"most", frees}}));

    EXPECT_EQ(home.json({"--duplicates-json", "/", "--details"}, 0)["searched"], home.path());
    EXPECT_EQ(home.json({"--duplicates-json", "/etc", "--details"}, 0)["searched"], nullptr);
}

} // namespace
} // namespace orbel
