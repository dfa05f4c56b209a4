#include "AppModel/LargeOldFlow.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/TreeEdits.h"
#include "ModelScene.h"
#include "RealHome.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

/// A measured home with three large files and a small one.
struct LargeOldFlowOn : testing::Test {
    LargeOldFlowOn() {
        useRealHome(scene.environment, home.path());
        scene.environment.dataVolumePath = home.path();
        for (const auto& [name, bytes] : {std::pair{"Films/a.mkv", 12'000'000},
                                          {"Films/B.mkv", 11'000'000},
                                          {"Images/c.iso", 10'500'000},
                                          {"Images/small.iso", 20'000}})
            files.push_back(home.file(name, static_cast<std::size_t>(bytes)));
    }

    LargeOldFlow& flow() { return *scene.model().largeOld(); }
    LargeOldModel& rows() { return *flow().rows(); }
    /// With the smallest size and any age, so that these files are among the rows.
    void measure() {
        flow().setSize(0);
        flow().setAge(0);
        scene.model().scan()->startScan(home.path());
        settle();
    }
    void settle() {
        scene.waitUntil([this] {
            return !scene.model().scan()->isScanning() && !scene.model().treeEdits().isBusy()
                   && flow().isKnown() && !flow().largeOldRunning()
                   && flow().largeOldVersion() == scene.model().scan()->treeVersion();
        });
    }
    QStringList names() {
        QStringList found;
        for (int row = 0; row < rows().rowCount(); ++row)
            found << rows().value(row, "name").toString();
        return found;
    }
    void waitFor(const QStringList& wanted) {
        scene.waitUntil([&] { return names() == wanted; });
        EXPECT_EQ(names(), wanted);
    }
    void toggle(const char* name) {
        for (const auto& row : flow().largeOldRows()) {
            if (row.item.title == name)
                flow().toggleTick(row.index);
        }
    }

    int kindNamed(const char* title) {
        return static_cast<int>(flow().kinds().indexOf(QLatin1String(title)));
    }

    TemporaryFolder home;
    std::vector<std::string> files;
    ModelScene scene;
};

} // namespace

TEST_F(LargeOldFlowOn, ListsFiltersAndSorts) {
    EXPECT_EQ(flow().countText(), QString());
    EXPECT_EQ(flow().largeOldQuery().unusedFor, 31'536'000) << "at first";
    const QAbstractItemModelTester tester(&rows(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    measure();
    EXPECT_EQ(names(), (QStringList{"a.mkv", "B.mkv", "c.iso"}));
    EXPECT_EQ(flow().countText(), QStringLiteral("3"));
    EXPECT_TRUE(flow().summary().startsWith(QStringLiteral("3 files · 3"))) << flow().summary().toStdString();

    flow().sortBy(LargeOldFlow::Name);
    flow().sortBy(LargeOldFlow::Name);
    waitFor({"c.iso", "B.mkv", "a.mkv"});
    EXPECT_TRUE(flow().isDescending());
    flow().sortBy(LargeOldFlow::Kind);
    waitFor({"c.iso", "a.mkv", "B.mkv"});

    toggle("a.mkv");
    toggle("c.iso");
    flow().setText(QStringLiteral(" ~/IMAG "));
    waitFor({"c.iso"});
    EXPECT_EQ(flow().shownCount(), QStringLiteral("1 of 3 files"));
    EXPECT_EQ(flow().ticks()->remark(), QStringLiteral("1 of 2 hidden by filters"));
    EXPECT_EQ(flow().ticks()->items().front().item.title, "c.iso") << "what is shown comes first";
    flow().setText({});
    flow().setKind(kindNamed("Video"));
    settle();
    EXPECT_EQ(names(), (QStringList{"a.mkv", "B.mkv"}));
    EXPECT_EQ(flow().ticks()->count(), 2) << "a filter unticks nothing";
    flow().setAge(3);
    settle();
    EXPECT_EQ(flow().countText(), QStringLiteral("0")) << "written just now";
}

TEST_F(LargeOldFlowOn, WhatMovesIsGoneAtOnceAndComesBack) {
    measure();
    auto& moves = *scene.model().moves();
    int rowsWhenTold = -1;
    QObject::connect(&moves, &MoveFlow::moved, [&] { rowsWhenTold = rows().rowCount(); });
    toggle("a.mkv");
    toggle("c.iso");
    moves.review(flow().ticks());
    moves.confirm();
    scene.waitUntil([&] { return moves.isReporting(); });
    EXPECT_EQ(rowsWhenTold, 1);
    EXPECT_EQ(names(), QStringList{"B.mkv"});
    EXPECT_EQ(flow().countText(), QStringLiteral("1"));
    flow().sortBy(LargeOldFlow::Name);
    settle();
    EXPECT_EQ(names(), QStringList{"B.mkv"});

    moves.putBackAll();
    scene.waitUntil([&] { return !moves.isPuttingBack(); });
    settle();
    EXPECT_EQ(names(), (QStringList{"a.mkv", "B.mkv", "c.iso"}));
    EXPECT_EQ(flow().ticks()->count(), 0);
}

TEST_F(LargeOldFlowOn, TakesOnlyWhatWasAskedForLast) {
    struct Look {
        LargeOldQuery query;
        std::atomic<bool> isWaiting = false;
        std::atomic<bool> mayEnd = false;
        std::atomic<bool> wasCancelled = false;
    };
    auto looks = std::make_shared<std::array<Look, 3>>();
    scene.environment.findLargeOld = [looks, number = std::make_shared<std::atomic<std::size_t>>(0)](
                                         const auto& query, const auto& tree, const auto& policy, Date now,
                                         const auto& isCancelled) {
        auto& look = looks->at((*number)++);
        look.query = query;
        look.isWaiting = true;
        while (!look.mayEnd)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        look.wasCancelled = isCancelled();
        // Rows nevertheless, as of a look that was nearly done.
        return query.run(tree, policy, now, {}, nullptr);
    };
    flow().setAge(0);
    flow().setSize(0);
    scene.model().scan()->startScan(home.path());
    scene.waitUntil([&] { return looks->at(0).isWaiting.load(); });
    flow().setKind(kindNamed("Disk images"));
    scene.waitUntil([&] { return looks->at(1).isWaiting.load(); });
    looks->at(1).mayEnd = true;
    scene.waitUntil([&] { return !flow().largeOldRunning(); });
    looks->at(0).mayEnd = true;
    scene.waitUntil([&] { return looks->at(0).wasCancelled.load(); });
    QTest::qWait(20);
    EXPECT_EQ(names(), QStringList{"c.iso"}) << "the older, wider look ended last";
    EXPECT_FALSE(looks->at(1).wasCancelled);

    scene.model().scan()->startScan(home.path());
    EXPECT_EQ(rows().rowCount(), 0) << "of a tree that is gone";
    EXPECT_EQ(flow().countText(), QString());
    EXPECT_EQ(flow().largeOldVersion(), -1);
    looks->at(2).mayEnd = true;
    settle();
}

TEST(WindowLarge, KeysTickCopyFindAndReview) {
    WindowScene scene;
    scene.open();
    scene.press(Qt::Key_3, Qt::ControlModifier);
    EXPECT_TRUE(scene.isShown(QStringLiteral("large.empty.action")));
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("large.table")); }));
    scene.press(Qt::Key_3, Qt::ControlModifier);
    EXPECT_TRUE(scene.says(QStringLiteral("Open in qemu-system-x86")));
    EXPECT_TRUE(scene.says(QStringLiteral("Protected: system location /var")));
    auto& ticks = *scene.app().largeOld()->ticks();

    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Space);
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Space);
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied, QStringLiteral("/home/mira/Videos/harbour_master.mov"));
    EXPECT_EQ(ticks.count(), 2);
    scene.press(Qt::Key_End);
    scene.press(Qt::Key_Space);
    EXPECT_EQ(ticks.count(), 2) << "what is refused cannot be ticked";

    scene.press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("large.text")));
    QTest::keyClick(&scene.window(), Qt::Key_R);
    QTest::keyClick(&scene.window(), Qt::Key_I);
    QTest::keyClick(&scene.window(), Qt::Key_D);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().largeOld()->rows()->rowCount() == 1; }));
    scene.settle();
    EXPECT_TRUE(scene.says(QStringLiteral("1 of 2 hidden by filters")));
    scene.press(Qt::Key_Escape);
    EXPECT_TRUE(scene.waitUntil([&] { return ticks.hiddenCount() == 0; }));
    scene.press(Qt::Key_Down);
    EXPECT_EQ(scene.app().largeOld()->rows()->rowCount(), scene.app().largeOld()->countText().toInt());
    scene.press(Qt::Key_Delete);
    EXPECT_TRUE(scene.says(QStringLiteral("Move 2 items to the Trash?")));
}

TEST(WindowLarge, FocusKeepsToItsFileAndTheMenuToItsItem) {
    WindowScene scene;
    scene.open();
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().largeOld()->isKnown(); }));
    scene.press(Qt::Key_3, Qt::ControlModifier);
    scene.click(QStringLiteral("large.row.raw.arw"));
    scene.click(QStringLiteral("large.head.0"));
    ASSERT_TRUE(scene.waitUntil(
        [&] { return scene.app().largeOld()->column() == static_cast<int>(LargeOldFlow::Name); }));
    scene.settle();
    scene.item(QStringLiteral("large.table"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied, QStringLiteral("/home/mira/Pictures/raw.arw"));

    scene.press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Show on Map")); }));
    scene.app().largeOld()->sortBy(LargeOldFlow::Size);
    scene.settle();
    scene.click(QStringLiteral("large.menu.zoom"));
    EXPECT_EQ(scene.app().screen(), Screen::map);
    EXPECT_TRUE(scene.says(QStringLiteral("~/Pictures/raw.arw"))) << "in the status line";

    scene.press(Qt::Key_3, Qt::ControlModifier);
    scene.click(QStringLiteral("large.kind"));
    scene.click(QStringLiteral("large.kind.1"));
    EXPECT_FALSE(scene.isShown(QStringLiteral("large.kind.1"))) << "it closes";
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().largeOld()->countText() == QLatin1String("2"); }));
    scene.settle();
    EXPECT_TRUE(scene.says(QStringLiteral("2 files")));
}

} // namespace orbel::test
