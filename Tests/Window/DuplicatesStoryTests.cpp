#include "AppModel/DuplicatesFlow.h"
#include "AppModel/MoveFlow.h"
#include "RealHome.h"
#include "Snapshots.h"
#include "WindowScene.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// A home with copies of a film, of a talk and of a protected picture.
struct DuplicatesInTheWindow : testing::Test {
    void open(int width = 1440, int height = 900) {
        place = scene.folder() + "/home";
        for (const auto& [name, letter, megabytes] :
             {std::tuple{"Videos/Film club/harbour.mkv", 'h', 6},
              {"Downloads/harbour.mkv", 'h', 6},
              {"Downloads/old laptop/harbour (1).mkv", 'h', 6},
              {"Documents/Talks/lidar_2025.zip", 'l', 4},
              {"Downloads/lidar_2025.zip", 'l', 4},
              {"Pictures/Raw 2025/festival.tar", 'f', 3},
              {"Downloads/festival.tar", 'f', 3},
              {"Downloads/festival of the year before last.tar", 'f', 3}}) {
            const auto path = place + '/' + name;
            fs::create_directories(fs::path(path).parent_path());
            std::ofstream(path) << std::string(static_cast<std::size_t>(megabytes) * 1'000'000, letter);
        }
        useRealHome(scene.environment, place);
        scene.environment.dataVolumePath = place;
        scene.open(width, height);
        scene.app().scan()->startScan(place);
        ASSERT_TRUE(
            scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
        scene.app().setScreen(Screen::duplicates);
        scene.settle();
    }
    void search() {
        scene.click(QStringLiteral("duplicates.empty.action"));
        ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("duplicates.table")); }));
        ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Protected: ~/Pictures")); }));
        scene.settle();
    }
    bool isThere(const std::string& name) const { return fs::exists(place + '/' + name); }

    WindowScene scene;
    std::string place;
};

} // namespace

TEST_F(DuplicatesInTheWindow, TwoOfThreeCopiesGoToTheTrashAndTheKeptOneStays) {
    open();
    keepPicture(scene, QStringLiteral("duplicates-not-searched"));
    search();
    // The film's group comes first: its head, then its copies.
    auto& flow = *scene.app().duplicates();
    int keptRow = 1;
    while (flow.groups()->fileAt(keptRow).path != place + "/Downloads/harbour.mkv")
        ++keptRow;
    scene.click(QStringLiteral("duplicates.keep.%1").arg(keptRow));
    EXPECT_FALSE(scene.isShown(QStringLiteral("duplicates.tick.1"))) << "the kept copy is the first";
    for (int row = 2; row <= 3; ++row)
        scene.click(QStringLiteral("duplicates.tick.%1").arg(row));
    EXPECT_TRUE(scene.says(QStringLiteral("2 copies ticked")));
    EXPECT_TRUE(scene.says(QStringLiteral("frees 12 MB")));
    keepPicture(scene, QStringLiteral("duplicates-ticked"));
    scene.setFontScale(2);
    keepPicture(scene, QStringLiteral("duplicates-ticked-large-font"));
    scene.setFontScale(1);

    scene.press(Qt::Key_Delete);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("confirm.commit")); }));
    scene.click(QStringLiteral("confirm.commit"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("report.headline")); }));
    EXPECT_TRUE(isThere("Downloads/harbour.mkv"));
    EXPECT_FALSE(isThere("Videos/Film club/harbour.mkv") || isThere("Downloads/old laptop/harbour (1).mkv"));
    EXPECT_TRUE(fs::exists(scene.environment.trashFolder + "/files/harbour (1).mkv"));
    scene.settle();
    scene.click(QStringLiteral("report.done"));
    EXPECT_TRUE(scene.says(QStringLiteral("2 groups")));
    EXPECT_FALSE(scene.says(QStringLiteral("harbour.mkv")));
}

TEST_F(DuplicatesInTheWindow, TheKeptCopyIsFirstAndTheOthersFollowByPath) {
    open();
    search();
    auto& groups = *scene.app().duplicates()->groups();
    const QAbstractItemModelTester tester(&groups, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const auto expectOrder = [&](const std::string& kept) {
        EXPECT_EQ(groups.fileAt(1).path, kept);
        EXPECT_EQ(groups.groupAt(1).keptFile().path, kept);
        EXPECT_LT(groups.fileAt(2).path, groups.fileAt(3).path);
    };
    expectOrder(groups.groupAt(0).keptFile().path);
    for (const int row : {3, 2, 3}) {
        const auto chosen = groups.fileAt(row).path;
        scene.click(QStringLiteral("duplicates.keep.%1").arg(row));
        expectOrder(chosen);
        EXPECT_EQ(scene.item(QStringLiteral("duplicates.table"))->property("currentIndex").toInt(), 1)
            << "the focus keeps to the copy";
        EXPECT_EQ(scene.item(QStringLiteral("duplicates.table"))->property("selectedRow").toInt(), 1);
    }
    scene.app().duplicates()->keepOldest();
    expectOrder(groups.groupAt(0).keptFile().path);
    keepPicture(scene, QStringLiteral("duplicates-kept-first"));
}

TEST_F(DuplicatesInTheWindow, ControlATicksAllButTheKeptOfEachGroup) {
    open();
    search();
    auto& flow = *scene.app().duplicates();
    scene.item(QStringLiteral("duplicates.table"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_GT(flow.tickedCount(), 0);
    for (const auto& group : flow.duplicateGroups()) {
        EXPECT_EQ(group.figures().ticked, group.figures().tickable);
        EXPECT_LT(group.figures().ticked, group.size()) << "one copy stays";
    }
    scene.press(Qt::Key_Menu);
    scene.click(QStringLiteral("duplicates.groupMenu.none"));
    EXPECT_EQ(flow.tickedCount(), 0);
}

TEST_F(DuplicatesInTheWindow, KeysFoldTickKeepAndFind) {
    open(800, 560);
    search();
    auto& flow = *scene.app().duplicates();
    const int all = flow.groups()->rowCount();
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Left);
    EXPECT_EQ(flow.groups()->rowCount(), all - 3);
    scene.press(Qt::Key_Right);
    EXPECT_EQ(flow.groups()->rowCount(), all);
    scene.press(Qt::Key_Space);
    EXPECT_EQ(flow.tickedCount(), 2);
    keepPicture(scene, QStringLiteral("duplicates-800x560"));
    scene.press(Qt::Key_Down);
    const auto isKept = [&] {
        return flow.groups()->fileAt(1).path == flow.duplicateGroups()[0].keptFile().path;
    };
    if (isKept())
        scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Space);
    EXPECT_EQ(flow.tickedCount(), 1) << "keeping it took its tick";
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(scene.requests().copied.endsWith(QStringLiteral(".mkv")));
    scene.press(Qt::Key_Menu);
    EXPECT_TRUE(scene.isShown(QStringLiteral("duplicates.menu.keep")));
    scene.press(Qt::Key_Escape);
    scene.press(Qt::Key_End);
    flow.setFolded(0, true);
    scene.settle();
    EXPECT_EQ(scene.item(QStringLiteral("duplicates.table"))->property("selectedRow").toInt(), all - 4)
        << "the selection keeps to its copy";
    flow.setFolded(0, false);
    scene.press(Qt::Key_F, Qt::ControlModifier);
    for (const auto key : {Qt::Key_L, Qt::Key_I, Qt::Key_D})
        scene.press(key);
    EXPECT_TRUE(scene.says(QStringLiteral("1 of 3 groups")));
    for (const auto key : {Qt::Key_Q, Qt::Key_Q})
        scene.press(key);
    EXPECT_TRUE(scene.says(QStringLiteral("No group matches")));
    scene.press(Qt::Key_Escape);
    EXPECT_TRUE(scene.isShown(QStringLiteral("duplicates.table")));
}

TEST_F(DuplicatesInTheWindow, ASearchThatIsStoppedKeepsWhatItProved) {
    open();
    // Two pairs as large as takes long; the first differ at once, so that the bar has come somewhere.
    for (const auto& [name, gigabytes] :
         {std::pair{"a.img", 80}, {"b.img", 80}, {"c.img", 60}, {"d.img", 60}}) {
        const auto path = place + "/Documents/" + name;
        std::ofstream(path) << (gigabytes == 80 ? name : "same");
        fs::resize_file(path, static_cast<std::uintmax_t>(gigabytes) * 1'000'000'000);
    }
    scene.app().scan()->measureAgain();
    ASSERT_TRUE(
        scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
    scene.settle();
    scene.click(QStringLiteral("duplicates.empty.action"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("160.0 GB of 280")); }));
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("duplicates.stop")));
    keepPicture(scene, QStringLiteral("duplicates-searching"));
    scene.press(Qt::Key_Escape);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("duplicates.banner")); }));
    EXPECT_TRUE(scene.says(QStringLiteral("Search stopped — partial.")));
    scene.settle();
    keepPicture(scene, QStringLiteral("duplicates-partial"));
}

} // namespace orbel::test
