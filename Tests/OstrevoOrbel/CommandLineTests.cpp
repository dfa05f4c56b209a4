#include "Support/ChildProcess.h"
#include "Support/ProgramHome.h"
#include "Util/AppVersion.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::ProgramHome;
using test::runOrbel;
using Words = std::vector<std::string>;

auto lineCount(const std::string& text) {
    return std::ranges::count(text, '\n');
}

TEST(CommandLine, TellsItsUsageAndVersion) {
    const auto help = runOrbel({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.contains(
        "\n  --large-json ROOT [--min-bytes N] [--unused-days N] [--exclude PATTERN]...\n"));
    EXPECT_EQ(runOrbel({"--trash", "x", "-h"}).output, help.output);
    for (const auto* word : {"--version", "-V"})
        EXPECT_EQ(runOrbel({word}).output, "orbel " + appVersion() + "\n");
}

TEST(CommandLine, WrongUsageIsSaidInTwoLines) {
    for (const auto& words : std::vector<Words>{{"--scan-json"},
                                                {"--unknown"},
                                                {"-x", "scan"},
                                                {"--top", "many"},
                                                {"--depth", "0"},
                                                {"--depth", "501"},
                                                {"--min-bytes", "-1"}}) {
        const auto run = runOrbel(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(lineCount(run.errors), 2);
        EXPECT_TRUE(run.errors.ends_with("\nTry orbel --help\n"));
        EXPECT_TRUE(run.errors.contains(words.front())) << run.errors;
    }
}

TEST(CommandLine, AMissingRootIsNoEmptyList) {
    const ProgramHome home;
    const auto missing = home.path("missing");
    for (const auto& words : std::vector<Words>{{missing},
                                                {"--large-json", missing},
                                                {"--tidy-json", missing},
                                                {"--rebuildable-json", missing},
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

/// Whether a run that was short of something ended well, or told so in one line.
void expectPlainEnd(const test::ProgramRun& run, const std::string& shortOf) {
    const bool isLoaded = run.status != 127; // the system's own words for a program that it cannot even start
    if (run.status == 0 || !isLoaded)
        return;
    EXPECT_EQ(run.status, 1) << shortOf << run.errors;
    EXPECT_EQ(run.output, "");
    EXPECT_TRUE(run.errors.starts_with("orbel: ") && lineCount(run.errors) == 1) << shortOf << run.errors;
}

TEST(CommandLine, OutOfMemoryOrThreadsEndsInOneLine) {
#ifdef ORBEL_SANITIZED
    GTEST_SKIP() << "a sanitizer needs more memory than there is to be";
#endif
    const ProgramHome home;
    for (int i = 0; i < 40; ++i)
        home.file("docs/" + std::to_string(i) + "/file", 10);
    const auto runWith = [&](const std::string& limit, const std::string& command) {
        auto start = home.start({});
        start.words = {"bash", "-c", "ulimit " + limit + "; exec \"$0\" " + command + " docs/0",
                       ORBEL_PROGRAM};
        return test::RunningProgram(start).finish();
    };
    int failures = 0;
    for (int kilobytes = 6'000; kilobytes < 40'000; kilobytes += 1'000)
        for (const std::string command : {"--scan-json", "--trash --dry-run"}) {
            const auto limit = "-v " + std::to_string(kilobytes);
            const auto run = runWith(limit, command);
            expectPlainEnd(run, limit);
            failures += run.status == 1 && run.errors.contains("memory") ? 1 : 0;
        }
    EXPECT_GT(failures, 0) << "no limit was met";
    if (!test::isRoot())
        GTEST_SKIP() << "only root can become a user without any process";
    const auto program = home.path("orbel");
    fs::copy_file(ORBEL_PROGRAM, program);
    fs::permissions(home.path(), fs::perms(0755));
    test::inChildProcess([&] {
        test::becomeOtherUser();
        for (const std::string command : {"--scan-json", "--tidy-json"}) {
            const auto run =
                test::runProgram({"bash", "-c", "ulimit -u 1; exec \"$0\" " + command + " /etc", program});
            EXPECT_EQ(run.status, 1);
            EXPECT_EQ(
                run.errors,
                "orbel: The system has no thread to give: too many run, or there is too little memory\n");
        }
    });
}

} // namespace
} // namespace orbel
