#include "Journal/IntentLog.h"
#include "Support/ChildProcess.h"
#include "Support/ProgramHome.h"
#include "Util/Uuid.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace orbel {
namespace {

using test::ProgramHome;

/// A home with volumes whose servers never answer in all the places that programs look at, and
/// links into them.
class DeadMount : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::isRoot())
            GTEST_SKIP() << "mounting needs root";
        for (const auto* place : {"OneDrive", "nas", "Applications", ".cache/gvfs", "docs/remote"})
            home.folder(place);
        home.folder(".local/bin");
        home.link("Pictures", home.path("nas/pictures"));
        home.link(".local/bin/tool", home.path("nas/bin/tool"));
        home.link("docs/link", home.path("nas/file"));
        home.file(".local/share/applications/tool.desktop",
                  "[Desktop Entry]\nType=Application\nName=Tool\nExec=" + home.path(".local/bin/tool")
                      + "\n");
        home.file(".config/user-dirs.dirs", std::string_view("XDG_PICTURES_DIR=\"$HOME/nas/pictures\"\n"));
        home.file("docs/file", 10);
        home.file("docs/old/file", 10);
    }

    void mountAll() const {
        test::useOwnMountTable();
        for (const auto* place : {"OneDrive", "nas", "Applications", ".cache/gvfs", "docs/remote"})
            test::mountDead(home.path(place));
    }

    /// Runs the program; a run that hangs is ended, and fails the test.
    test::ProgramRun run(std::vector<std::string> words) const {
        using namespace std::chrono_literals;
        const auto text = words.front();
        test::RunningProgram program(home.start(std::move(words)));
        for (const auto deadline = std::chrono::steady_clock::now() + 60s; program.isRunning();) {
            if (std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << text << " hangs";
                program.signal(SIGKILL);
                break;
            }
            std::this_thread::sleep_for(10ms);
        }
        return program.finish();
    }

    const ProgramHome home;
};

TEST_F(DeadMount, NoCommandWaitsForIt) {
    home.file("docs/remote/moved before", 10);
    ASSERT_EQ(home.run({"--trash", home.path("docs/remote/moved before")}).status, 0);
    test::inChildProcess([&] {
        mountAll();
        for (const std::vector<std::string>& words : {std::vector<std::string>{"--scan-json", home.path()},
                                                      {home.path()},
                                                      {"--large-json", home.path()},
                                                      {"--tidy-json", home.path()},
                                                      {"--rebuildable-json", home.path()},
                                                      {"--duplicates-json", home.path()},
                                                      {"--map-svg", home.path(), home.path("map.svg")},
                                                      {"--system-json"},
                                                      {"--apps-json"},
                                                      {"--leftovers-dry-run"},
                                                      {"--leftovers-json"},
                                                      {"--journal-json"},
                                                      {"--put-back", "last"}})
            EXPECT_LE(run(words).status, 1) << words.front();
    });
}

TEST_F(DeadMount, WhatLiesElsewhereMovesAndComesBack) {
    test::inChildProcess([&] {
        mountAll();
        const auto moved =
            run({"--trash", home.path("docs/file"), home.path("nas/file"), home.path("OneDrive"),
                 home.path("Pictures/x"), home.path("docs/link"), home.path("docs/old")});
        const auto report = nlohmann::json::parse(moved.output);
        ASSERT_EQ(report.at("moved").size(), 2U) << moved.output;
        EXPECT_EQ(report["moved"][0]["title"], "file");
        EXPECT_EQ(report["moved"][1]["title"], "old");
        ASSERT_EQ(report.at("skipped").size(), 4U);
        for (const auto which : {0, 1, 2})
            EXPECT_EQ(report["skipped"][which]["reason"], "On another volume") << which;
        EXPECT_EQ(report["skipped"][3]["reason"],
                  "Is a symbolic link; links are never followed for deletion");
        EXPECT_EQ(run({"--put-back", "last"}).status, 0);
        EXPECT_TRUE(std::filesystem::exists(home.path("docs/old/file")));
    });
}

TEST_F(DeadMount, WhatACrashLeftThereIsSettledOnceItAnswers) {
    const auto path = home.file("docs/remote/item", 10);
    const auto stamp = FileStamp::of(path).value();
    {
        const MoveIntent intent{
            .entry = {.id = newUuid(), .sessionID = "s", .time = {}, .title = "item", .originalPath = path},
            .sourcePath = path,
            .destinationPath = home.trashed("item"),
            .stamp = stamp};
        ASSERT_TRUE(IntentLog(home.journalPath()).begin({&intent, 1}));
    }
    const auto intents = home.path(".local/share/Ostrevo Orbel/intents");
    test::inChildProcess([&] {
        mountAll();
        const auto waiting = run({"--put-back", "last"});
        EXPECT_TRUE(waiting.errors.contains("may not answer")) << waiting.errors;
        EXPECT_FALSE(std::filesystem::is_empty(intents));
    });
    EXPECT_EQ(home.run({"--put-back", "last"}).errors.contains("may not answer"), false);
    EXPECT_TRUE(std::filesystem::is_empty(intents));
}

} // namespace
} // namespace orbel
