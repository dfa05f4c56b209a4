#include "Commands/ProgressLine.h"
#include "Commands/RootScan.h"
#include "Commands/SizeTable.h"
#include "Support/ChildProcess.h"
#include "Support/ProgramHome.h"
#include "Support/TreeBuilder.h"
#include "Util/DisplayWidth.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace orbel {
namespace {

using test::ProgramHome;
using test::TreeBuilder;

constexpr TableForm pipeForm{.isUnicode = true};
constexpr TableForm narrowForm{.isTerminal = true, .columns = 60, .isUnicode = true};

RootScan scanOf(TreeBuilder& builder) {
    RootScan scan;
    scan.result.tree = builder.build();
    return scan;
}

/// 10 MB: 8 of them in a folder with two more below it, and small files.
TreeBuilder sizedTree() {
    TreeBuilder builder;
    const auto media = builder.folder(0, "media");
    const auto films = builder.folder(media, "films");
    builder.file(films, "one.mkv", 5'000'000);
    builder.file(media, "two.mkv", 3'000'000);
    builder.file(0, "notes", 1'500'000);
    for (int i = 0; i < 5; ++i)
        builder.file(0, "small" + std::to_string(i), 100'000);
    return builder;
}

std::string tableOf(TreeBuilder builder, const ListLimits& limits, const TableForm& form) {
    return sizeTable(scanOf(builder), limits, form);
}

TEST(SizeTable, OfAPipeIsPlainAndAddsUp) {
    EXPECT_EQ(tableOf(sizedTree(), {.top = 3}, pipeForm), "  8 MB   80.0%      4  media/\n"
                                                          "  2 MB   15.0%      1  notes\n"
                                                          "100 KB    1.0%      1  small0\n"
                                                          "400 KB    4.0%      4  … and 4 more\n"
                                                          " 10 MB  100.0%     10  total\n");
    EXPECT_EQ(tableOf(sizedTree(), {.minimumBytes = 1'500'001}, {}), " 8 MB   80.0%      4  media/\n"
                                                                     " 2 MB   20.0%      6  ... and 6 more\n"
                                                                     "10 MB  100.0%     10  total\n");
    EXPECT_EQ(tableOf(TreeBuilder(), {}, pipeForm), " 0 B    0.0%      0  total\n");
}

TEST(SizeTable, ShowsLevelsAsATree) {
    EXPECT_EQ(tableOf(sizedTree(), {.top = 2, .depth = 3}, pipeForm),
              "  8 MB   80.0%      4  ├─ media/\n"
              "  5 MB   50.0%      2  │  ├─ films/\n"
              "  5 MB   50.0%      1  │  │  └─ one.mkv\n"
              "  3 MB   30.0%      1  │  └─ two.mkv\n"
              "  2 MB   15.0%      1  ├─ notes\n"
              "500 KB    5.0%      5  └─ … and 5 more\n"
              " 10 MB  100.0%     10  total\n");
    EXPECT_EQ(tableOf(sizedTree(), {.top = 1, .depth = 2}, {}), " 8 MB   80.0%      4  |- media/\n"
                                                                " 5 MB   50.0%      2  |  |- films/\n"
                                                                " 3 MB   30.0%      1  |  `- ... and 1 more\n"
                                                                " 2 MB   20.0%      6  `- ... and 6 more\n"
                                                                "10 MB  100.0%     10  total\n");
}

TEST(SizeTable, OfATerminalHasAHeaderBarsAndColour) {
    EXPECT_EQ(tableOf(sizedTree(), {.top = 2}, narrowForm),
              "              SIZE   SHARE  ITEMS  NAME\n"
              "████████      8 MB   80.0%      4  media/\n"
              "█▌            2 MB   15.0%      1  notes\n"
              "▌           500 KB    5.0%      5  … and 5 more\n"
              "             10 MB  100.0%     10  total\n");
    auto form = narrowForm;
    form.hasColour = true;
    const auto coloured = tableOf(sizedTree(), {.top = 2}, form);
    EXPECT_TRUE(
        coloured.contains("\x1B[36m████████\x1B[0m      8 MB   80.0%      4  \x1B[1;34mmedia/\x1B[0m\n"))
        << coloured;
    form = {.isTerminal = true, .columns = 60};
    EXPECT_TRUE(tableOf(sizedTree(), {.top = 2}, form).contains("\n##            2 MB"))
        << tableOf(sizedTree(), {.top = 2}, form);
}

TEST(SizeTable, FitsEveryTerminalAndCutsNothingForAPipe) {
    TreeBuilder builder;
    const std::string longName = std::string(100, 'n') + "日本語";
    NodeIndex folder = 0;
    for (int level = 0; level < 20; ++level)
        folder = builder.folder(folder, longName);
    builder.file(folder, longName, 123'456'789'000);
    for (std::size_t columns = 14; columns < 140; ++columns) {
        std::istringstream lines(
            tableOf(builder, {.depth = 30}, {.isTerminal = true, .columns = columns, .isUnicode = true}));
        for (std::string line; std::getline(lines, line);)
            ASSERT_LE(displayWidth(line), columns) << line;
    }
    const auto at40 = tableOf(builder, {}, {.isTerminal = true, .columns = 40, .isUnicode = true});
    EXPECT_TRUE(at40.contains("123.5 GB  100.0%  nnnnnnnnnnn…nnn日本語/\n")) << at40;
    EXPECT_TRUE(tableOf(builder, {}, pipeForm).contains("  " + longName + "/\n"));
}

TEST(SizeTable, ShowsHostileNamesHarmlessly) {
    TreeBuilder builder;
    builder.file(0, "a\n\x1B[31mred", 4'000'000);
    builder.file(0, "bad\xFF", 3'000'000);
    builder.file(0, "photo\u202Egpj.exe", 2'000'000);
    builder.file(0, "שלום", 1'000'000);
    EXPECT_EQ(tableOf(builder, {}, pipeForm), " 4 MB   40.0%      1  a[U+000A][U+001B][31mred\n"
                                              " 3 MB   30.0%      1  bad\uFFFD\n"
                                              " 2 MB   20.0%      1  photo[U+202E]gpj.exe\n"
                                              " 1 MB   10.0%      1  שלום\n"
                                              "10 MB  100.0%      4  total\n");
}

TEST(SizeTable, MarksWhatWasNotMeasured) {
    auto builder = sizedTree();
    builder.folder(0, "mounted", NodeFlags::otherVolume);
    auto scan = scanOf(builder);
    EXPECT_TRUE(sizeTable(scan, {}, pipeForm).contains("  mounted/ (another volume)\n"));
    scan.result.cancelled = true;
    EXPECT_TRUE(sizeTable(scan, {}, pipeForm).ends_with("  total so far: stopped\n"));
    scan.keptOrigin.emplace().measuredAt = *parseIso8601("2026-01-02T03:04:05Z");
    scan.keptOrigin->machine = "ser\x1Bver";
    EXPECT_TRUE(sizeTable(scan, {}, narrowForm)
                    .starts_with("/root on ser[U+001B]ver, measured 2026-01-02T03:04:05Z\n"));
    EXPECT_FALSE(sizeTable(scan, {}, pipeForm).contains("measured"));
    scan.keptOrigin.emplace(); // of an export
    EXPECT_TRUE(sizeTable(scan, {}, narrowForm).starts_with("/root\n"));
}

TEST(TableForm, ObeysTheEnvironment) {
    using Variables = std::map<std::string, std::string>;
    const auto form = [](bool isTerminal, std::optional<std::size_t> columns, const Variables& variables) {
        return TableForm::of(isTerminal, columns, [&](const char* name) {
            const auto found = variables.find(name);
            return found == variables.end() ? std::string() : found->second;
        });
    };
    const Variables usual{{"TERM", "xterm"}, {"LANG", "de_DE.UTF-8"}, {"COLUMNS", "50"}};
    const auto with = [&](const std::string& name, const std::string& value) {
        auto changed = usual;
        changed[name] = value;
        return changed;
    };
    EXPECT_TRUE(form(true, 90, usual).hasColour);
    EXPECT_TRUE(form(true, 90, with("NO_COLOR", "")).hasColour);
    EXPECT_FALSE(form(true, 90, with("NO_COLOR", "1")).hasColour);
    EXPECT_FALSE(form(true, 90, with("TERM", "dumb")).hasColour);
    EXPECT_FALSE(form(true, 90, {}).hasColour);
    EXPECT_FALSE(form(false, std::nullopt, usual).hasColour);
    EXPECT_EQ(form(true, 90, usual).columns, 90);
    EXPECT_EQ(form(true, std::nullopt, usual).columns, 50);
    for (const auto* wrong : {"", "0", "-5", "wide"})
        EXPECT_EQ(form(true, std::nullopt, with("COLUMNS", wrong)).columns, 80) << wrong;
    EXPECT_TRUE(form(false, std::nullopt, usual).isUnicode);
    EXPECT_TRUE(form(false, std::nullopt, with("LC_ALL", "C.utf8")).isUnicode);
    EXPECT_FALSE(form(false, std::nullopt, with("LC_ALL", "C")).isUnicode);
    EXPECT_FALSE(form(false, std::nullopt, with("LC_CTYPE", "de_DE.ISO-8859-1")).isUnicode);
}

TEST(ProgressLine, IsRewrittenFromASecondOnAndErased) {
    std::string written;
    ProgressLine line([&](std::string_view text) { written += text; }, 24);
    line.show({.entries = 10, .bytes = 1000, .unreadable = 0, .elapsed = 0.75, .topLevel = {}});
    line.erase();
    EXPECT_EQ(written, "");
    line.show({.entries = 123'456, .bytes = 1'234'000'000, .unreadable = 0, .elapsed = 1.5, .topLevel = {}});
    EXPECT_EQ(written, "\r123456 entries, 1.2 GB,") << "the last column stays free";
    written.clear();
    line.show({.entries = 1, .bytes = 5, .unreadable = 0, .elapsed = 2, .topLevel = {}});
    EXPECT_EQ(written, "\r1 entries, 5 B, 2 s    ") << "nothing of the longer line stays";
    written.clear();
    line.erase();
    EXPECT_EQ(written, "\r                   \r");
}

class TableCommand : public testing::Test {
protected:
    TableCommand() {
        home.file("data/large/file", 300'000);
        home.file("data/small", 100'000);
    }

    /// On a terminal 50 columns wide, with these words after the program's name.
    test::ProgramRun runOnTerminal(const std::string& words) const {
        auto start = home.start({});
        start.environment.insert(start.environment.end(), {"TERM=xterm", "LC_ALL=C.UTF-8", "NO_COLOR="});
        start.words = {"script", "-qec", "stty cols 50; exec '" ORBEL_PROGRAM "' " + words, "/dev/null"};
        return test::RunningProgram(start).finish();
    }

    const ProgramHome home;
};

TEST_F(TableCommand, PrintsForAPipeAndForATerminal) {
    for (const auto& words : {std::vector<std::string>{"data"}, {"--top", "2", "--", "data"}}) {
        const auto piped = home.run(words);
        EXPECT_EQ(piped.status, 0);
        EXPECT_EQ(piped.errors, "");
        EXPECT_FALSE(piped.output.contains('\x1B') || piped.output.contains("SIZE")) << piped.output;
        EXPECT_LT(piped.output.find("2  large/\n"), piped.output.find("1  small\n"));
        EXPECT_TRUE(piped.output.ends_with("3  total\n")) << piped.output;
    }
    EXPECT_TRUE(home.run({}).output.contains("  data/\n")) << "the current folder";

    const auto shown = runOnTerminal("data");
    EXPECT_EQ(shown.status, 0);
    EXPECT_TRUE(shown.output.contains("SIZE   SHARE  ITEMS  NAME")) << shown.output;
    EXPECT_TRUE(shown.output.contains("\x1B[1;34mlarge/\x1B[0m\r\n")) << shown.output;

    ASSERT_EQ(home.run({"--scan-json", "data", "--save", "kept.scan"}).status, 0);
    EXPECT_EQ(home.run({"kept.scan"}).output, home.run({"data"}).output);
    EXPECT_TRUE(runOnTerminal("kept.scan").output.contains(", measured 2"));
}

TEST_F(TableCommand, SaysWhatItCouldNotDo) {
    const auto missing = home.run({"tidy-json"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.output, "");
    EXPECT_EQ(missing.errors, "orbel: tidy-json: No such file or directory\n");

    const auto stopped =
        test::runProgram({"strace", "-f", "-o", home.path("trace"), "-e", "trace=getdents64", "-e",
                          "inject=getdents64:signal=SIGINT:when=1", ORBEL_PROGRAM, home.path("data")});
    EXPECT_EQ(stopped.status, 1);
    EXPECT_TRUE(stopped.output.ends_with("  total so far: stopped\n")) << stopped.output;
    EXPECT_TRUE(stopped.errors.contains("partial")) << stopped.errors;

    if (!test::isRoot())
        GTEST_SKIP() << "only root can make a folder that this user cannot read";
    test::inChildProcess([&] {
        test::holdProgramsToPermissions();
        std::filesystem::permissions(home.path("data/large"), std::filesystem::perms::none);
        const auto partly = home.run({"data"});
        EXPECT_EQ(partly.status, 0);
        EXPECT_EQ(partly.errors, "orbel: 1 entry could not be read\n");
    });
}

} // namespace
} // namespace orbel
