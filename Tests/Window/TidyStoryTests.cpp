#include "AppModel/MoveFlow.h"
#include "AppModel/TidyFlow.h"
#include "AppModel/TreeEdits.h"
#include "Platform/HomeTrash.h"
#include "Scan/TreeScanner.h"
#include "Snapshots.h"
#include "WindowScene.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// A home with empty folders, one of them new, and shortcuts of every state.
struct TidyInTheWindow : testing::Test {
    void open(int width = 1440, int height = 900) {
        place = scene.folder() + "/home";
        for (const auto* name :
             {"Projects/old notes/attachments/a/b", "Downloads/statement export", "Downloads/new", "Desktop"})
            fs::create_directories(place + '/' + name);
        std::ofstream(place + "/Desktop/Old game.desktop")
            << "[Desktop Entry]\nType=Application\nName=Old game\nExec=/opt/no-such/game\n";
        std::ofstream(place + "/Projects/notes.txt") << "kept";
        std::ofstream(place + "/Downloads/paper.pdf") << "kept";
        fs::create_symlink("../gone/final.pdf", place + "/Projects/latest.pdf");
        fs::create_symlink("/media/nobody/projects", place + "/Downloads/Shared drive");
        fs::create_directories(place + "/Projects/site/node_modules/.bin");
        fs::create_symlink("../tsx/dist/cli.mjs", place + "/Projects/site/node_modules/.bin/tsx");
        // What is new now is old by then, but for one.
        scene.environment.now = [] { return std::chrono::system_clock::now() + std::chrono::hours(36); };
        fs::last_write_time(place + "/Downloads/new",
                            fs::file_time_type::clock::now() + std::chrono::hours(35));
        scene.environment.home = place;
        scene.environment.dataVolumePath = place;
        scene.environment.trashFolder = platform::homeTrash(place);
        scene.environment.scan = [this](const auto& root, const auto& token, const auto& progress,
                                        const auto& exclusions) {
            auto result = TreeScanner::scan(root, std::nullopt, token, progress, exclusions);
            result.cancelled = isPartial;
            return result;
        };
        scene.open(width, height);
        scene.app().scan()->startScan(place);
        ASSERT_TRUE(scene.waitUntil([&] {
            return scene.app().scan()->measuredText() != QString() && !scene.app().scan()->isScanning();
        }));
        scene.app().setScreen(Screen::tidy);
        ASSERT_TRUE(scene.waitUntil([&] { return flow().isKnown(); }));
        scene.settle();
    }
    TidyFlow& flow() { return *scene.app().tidy(); }
    bool isThere(const std::string& name) const { return fs::exists(fs::symlink_status(place + '/' + name)); }
    int row(TidyListModel* list, const std::string& name) const {
        for (int i = 0; i < list->rowCount(); ++i) {
            if (list->row(i).item.item.path == place + '/' + name)
                return i;
        }
        return -1;
    }
    void confirm() {
        ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("confirm.commit")); }));
        scene.click(QStringLiteral("confirm.commit"));
        ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("report.done")); }));
        scene.settle();
    }

    WindowScene scene;
    std::string place;
    bool isPartial = false;
};

} // namespace

TEST_F(TidyInTheWindow, WhatIsTickedGoesToTheTrashAndTheRestStays) {
    open();
    const QAbstractItemModelTester tester(flow().folders(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_TRUE(scene.says(QStringLiteral("3 topmost folders, 6 with those inside")));
    EXPECT_TRUE(scene.says(QStringLiteral("Move 2 empty folders to the Trash")));
    EXPECT_TRUE(scene.says(QStringLiteral("4 found: 2 missing, 1 unknown, 1 intentional")));
    EXPECT_EQ(flow().emptyFolderRows().size(), 3);
    EXPECT_EQ(flow().brokenShortcutRows().size(), 4);
    EXPECT_EQ(flow().tidyVersion(), scene.app().scan()->treeVersion());
    keepPicture(scene, QStringLiteral("tidy-filled"));
    scene.setFontScale(2);
    keepPicture(scene, QStringLiteral("tidy-filled-large-font"));
    scene.setFontScale(1);

    const int locked = row(flow().shortcuts(), "Projects/site/node_modules/.bin/tsx");
    scene.click(QStringLiteral("tidy.shortcuts.tick.%1").arg(locked));
    EXPECT_FALSE(flow().shortcuts()->isTicked(locked));
    const int exported = row(flow().folders(), "Downloads/statement export");
    scene.click(QStringLiteral("tidy.folders.tick.%1").arg(exported));
    EXPECT_TRUE(scene.says(QStringLiteral("Move 1 empty folder to the Trash")));

    EXPECT_TRUE(scene.says(QStringLiteral("1 ticked, 4 with those inside")));
    scene.click(QStringLiteral("tidy.folders.move"));
    EXPECT_TRUE(scene.says(QStringLiteral("Move 1 item to the Trash?")));
    confirm();
    EXPECT_FALSE(isThere("Projects/old notes"));
    EXPECT_TRUE(isThere("Downloads/statement export") && isThere("Downloads/new"));
    scene.click(QStringLiteral("report.putBack"));
    ASSERT_TRUE(scene.waitUntil([&] { return isThere("Projects/old notes/attachments/a/b"); }));
    ASSERT_TRUE(scene.waitUntil([&] { return flow().folders()->total() == 3 && !flow().tidyRunning(); }));
    EXPECT_FALSE(flow().folders()->isTicked(row(flow().folders(), "Downloads/statement export")))
        << "it was unticked by hand";
    scene.click(QStringLiteral("report.done"));

    scene.click(QStringLiteral("tidy.shortcuts.move"));
    confirm();
    EXPECT_FALSE(isThere("Desktop/Old game.desktop"));
    EXPECT_TRUE(isThere("Projects/latest.pdf") && isThere("Downloads/Shared drive"));
    ASSERT_TRUE(
        scene.waitUntil([&] { return flow().summary().endsWith(QStringLiteral("3 broken shortcuts")); }));
}

TEST_F(TidyInTheWindow, AMenuTicksTheItemThatItNamesWhateverTheRowsAreByThen) {
    open();
    const auto isTicked = [this](const char* name) {
        return flow().folders()->isTicked(row(flow().folders(), name));
    };
    scene.item(QStringLiteral("tidy.folders.table"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Home);
    for (int i = 0; i < row(flow().folders(), "Projects/old notes"); ++i)
        scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Menu);
    flow().setFilter(QStringLiteral("notes"));
    scene.settle();
    scene.click(QStringLiteral("tidy.folders.menu.tick"));
    EXPECT_FALSE(isTicked("Projects/old notes"));
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied.toStdString(), place + "/Projects/old notes")
        << "the focus is on it, too";

    scene.press(Qt::Key_Menu);
    flow().setFilter(QString());
    scene.settle();
    scene.click(QStringLiteral("tidy.folders.menu.tick"));
    EXPECT_TRUE(isTicked("Projects/old notes") && isTicked("Downloads/statement export"));
    EXPECT_FALSE(isTicked("Downloads/new"));
}

TEST_F(TidyInTheWindow, ControlATicksAllThatIsShownAndMayMove) {
    open();
    auto* const folders = flow().folders();
    scene.item(QStringLiteral("tidy.folders.table"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(folders->tickedCount(), 0);
    flow().setFilter(QStringLiteral("Downloads"));
    scene.settle();
    scene.press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(scene.waitUntil([&] { return folders->tickedCount() == 2; }))
        << "what is hidden stays as it was";
    flow().setFilter(QString());
    flow().lookAgain();
    ASSERT_TRUE(scene.waitUntil([&] { return !flow().tidyRunning(); }));
    EXPECT_EQ(folders->tickedCount(), 2) << "a new look ticks nothing by itself after that";

    scene.item(QStringLiteral("tidy.shortcuts.table"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Menu);
    scene.click(QStringLiteral("tidy.shortcuts.menu.none"));
    EXPECT_EQ(flow().shortcuts()->tickedCount(), 0);
    scene.press(Qt::Key_Menu);
    scene.click(QStringLiteral("tidy.shortcuts.menu.all"));
    const int mayMove = flow().shortcuts()->tickable();
    EXPECT_TRUE(scene.waitUntil([&] { return flow().shortcuts()->tickedCount() == mayMove; }));
    EXPECT_LT(mayMove, flow().shortcuts()->rowCount()) << "the others are refused";
}

TEST_F(TidyInTheWindow, WhatProgramsMakeAgainMovesAndComesBack) {
    for (const auto* name : {"Projects/app/Cargo.toml", "Projects/app/target/debug/app",
                             "Projects/web/package.json", "Projects/web/node_modules/x/index.js"}) {
        const auto path = scene.folder() + "/home/" + name;
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path) << std::string(name == std::string("Projects/app/target/debug/app") ? 90'000 : 10,
                                           'x');
    }
    open();
    auto& list = *flow().rebuildable();
    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_EQ(list.value(0, "path").toString(), QStringLiteral("~/Projects/app/target"));
    EXPECT_TRUE(list.value(0, "detail")
                    .toString()
                    .startsWith(QStringLiteral("Cargo.toml beside it · cargo makes it again · changed ")));
    EXPECT_EQ(list.tickedCount(), 0) << "both are new";
    EXPECT_TRUE(
        flow().summary().endsWith(QStringLiteral(" rebuildable, 3 empty folders, 4 broken shortcuts")));
    keepPicture(scene, QStringLiteral("tidy-rebuildable"));

    EXPECT_EQ(flow().programs(), (QStringList{"All programs", "cargo", "npm"}));
    flow().setProgram(2);
    ASSERT_EQ(list.rowCount(), 1);
    EXPECT_EQ(list.value(0, "path").toString(), QStringLiteral("~/Projects/web/node_modules"));
    flow().setAge(1);
    EXPECT_EQ(list.rowCount(), 0);
    EXPECT_TRUE(scene.says(QStringLiteral("The filters hide every row.")));
    flow().setAge(0);
    flow().setProgram(1);
    scene.press(Qt::Key_Space);
    EXPECT_EQ(list.tickedCount(), 1);
    scene.press(Qt::Key_Delete);
    confirm();
    EXPECT_FALSE(isThere("Projects/app/target"));
    EXPECT_TRUE(isThere("Projects/web/node_modules"));
    scene.press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(scene.waitUntil([&] { return isThere("Projects/app/target/debug/app"); }));
}

TEST_F(TidyInTheWindow, ASmallWindowHasTabsAndAStoppedScanNoEmptyFolders) {
    isPartial = true;
    open(800, 560);
    EXPECT_EQ(flow().folders()->total(), 0);
    EXPECT_EQ(flow().rebuildable()->total(), 0);
    EXPECT_TRUE(scene.isShown(QStringLiteral("tidy.shortcuts.table"))) << "the first with something in it";
    scene.click(QStringLiteral("tidy.tab.0"));
    keepPicture(scene, QStringLiteral("tidy-partial-800x560"));
    scene.click(QStringLiteral("tidy.tab.2"));
    EXPECT_TRUE(scene.isShown(QStringLiteral("tidy.shortcuts.table")));
    keepPicture(scene, QStringLiteral("tidy-shortcuts-800x560"));
    isPartial = false;
    scene.app().scan()->measureAgain();
    EXPECT_FALSE(flow().isKnown());
    ASSERT_TRUE(scene.waitUntil([&] { return flow().isKnown() && flow().folders()->total() == 3; }));
    scene.click(QStringLiteral("tidy.tab.1"));
    scene.press(Qt::Key_F, Qt::ControlModifier);
    for (const auto key : {Qt::Key_N, Qt::Key_E, Qt::Key_W})
        scene.press(key);
    EXPECT_EQ(flow().folders()->rowCount(), 1);
    EXPECT_TRUE(scene.says(QStringLiteral("2 ticked, 2 of them hidden")));
    keepPicture(scene, QStringLiteral("tidy-800x560"));
    scene.click(QStringLiteral("tidy.folders.all"));
    EXPECT_EQ(flow().folders()->tickedCount(), 0) << "hidden ones too";
}

} // namespace orbel::test
