#include "Support/ProgramHome.h"

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

} // namespace
} // namespace orbel
