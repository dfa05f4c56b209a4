#include "Support/ProgramHome.h"
#include "Util/AppVersion.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace orbel {
namespace {

using test::ProgramHome;
using test::runOrbel;
using Words = std::vector<std::string>;

auto lineCount(const std::string& text) {
    return std::ranges::count(text, '\n');
}

TEST(CommandLine, TellsItsUsageAndVersion) {
    const auto help = runOrbel({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.contains("\n  --large-json ROOT [--min-bytes N] [--unused-days N]\n"));
    EXPECT_EQ(runOrbel({"--trash", "x", "-h"}).output, help.output);
    for (const auto* word : {"--version", "-V"})
        EXPECT_EQ(runOrbel({word}).output, "orbel " + appVersion() + "\n");
}

TEST(CommandLine, WithoutACommandSaysSoInTwoLines) {
    for (const auto& words :
         std::vector<Words>{{}, {"--scan-json"}, {"--unknown"}, {"scan", "-x"}, {"--top", "3"}}) {
        const auto run = runOrbel(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(lineCount(run.errors), 2);
        EXPECT_TRUE(run.errors.ends_with("\nTry orbel --help\n"));
        EXPECT_TRUE(words.empty() || run.errors.contains(words.front())) << run.errors;
    }
}

TEST(CommandLine, AMissingRootIsNoEmptyList) {
    const ProgramHome home;
    const auto missing = home.path("missing");
    for (const auto& words : std::vector<Words>{{"--large-json", missing},
                                                {"--tidy-json", missing},
                                                {"--map-svg", missing, "map.svg"},
                                                {"--map-svg", missing, "-"}}) {
        const auto run = home.run(words);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "orbel: " + missing + ": No such file or directory\n");
    }
    for (const auto* lenient : {"--scan-json", "--duplicates-json"}) {
        const auto run = home.run({lenient, missing});
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(run.output, "");
        EXPECT_EQ(run.errors, "");
    }
}

} // namespace
} // namespace orbel
