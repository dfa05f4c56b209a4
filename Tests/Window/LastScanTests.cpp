#include "AppModel/KeptScanSettings.h"
#include "AppModel/TreeEdits.h"
#include "HomeWithFilms.h"
#include "SampleDisk.h"
#include "Saved/ScanArchive.h"
#include "Snapshots.h"
#include "WindowScene.h"

#include <cmath>
#include <filesystem>
#include <future>
#include <gtest/gtest.h>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// A home that was measured the day before, by a window that has been closed since.
struct LastScanOf : HomeWithFilms {
    LastScanOf() {
        scene.environment.scansFolder = home.path("scans");
        const auto tree = scanned().tree;
        const auto now = std::chrono::floor<Date::duration>(scene.world()->now);
        const ScanOrigin origin{
            .measuredAt = now - std::chrono::days(1),
            .machine = {},
            .user = {},
            .program = {},
            .volume = VolumeInfo{.total = 1000, .free = 350, .used = 550, .availableForImportantUsage = 350}};
        EXPECT_TRUE(ScanArchive(home.path("scans")).keep(tree, origin, now));
        KnownRoots(*scene.environment.settings, home.path()).note(home.path(), tree.count());
    }
};

} // namespace

TEST_F(LastScanOf, IsShownAtTheStartAsOfThenAndMovesOnlyWhatIsStillTrue) {
    auto& scan = *app().scan();
    EXPECT_TRUE(app().kept()->isOpeningLast());
    scene.waitUntil([&] { return scan.hasTree(); });
    EXPECT_TRUE(scan.isKept() && !scan.isForeign() && scan.isWholeDisk());
    EXPECT_FALSE(app().kept()->isOpeningLast());
    EXPECT_TRUE(scan.keptStatement().startsWith(QStringLiteral("Measured yesterday at ")));
    EXPECT_EQ(scan.coverage()->notMeasured(), 0) << "of the disk as it was then, which is smaller";

    // What was written since has a term of its own, so that the sum is one.
    const auto& ledger = *app().disk()->ledger();
    scene.waitUntil([&] { return ledger.used().bytes() == 600 && ledger.isMeasured(); });
    EXPECT_EQ(ledger.writtenSince().bytes(), 50);
    EXPECT_EQ(ledger.free().bytes(), 300) << "now";
    EXPECT_EQ(*looks, 0) << "what commands free is of now";

    home.file("Videos/a.mkv", std::size_t{300'000});
    auto& map = *app().map();
    map.select(node(film));
    scene.waitUntil([&] { return !map.ticking()->refusal().isEmpty(); });
    EXPECT_EQ(map.ticking()->refusal(), QStringLiteral("Changed since the scan — scan again"));
    map.ticking()->toggle(node(copy));
    scene.waitUntil([&] { return map.ticking()->ticks()->count() == 1; });
    app().moves()->review(map.ticking()->ticks());
    app().moves()->confirm();
    scene.waitUntil([&] { return app().moves()->isReporting() && !app().treeEdits().isBusy(); });
    EXPECT_FALSE(fs::exists(copy));
    EXPECT_TRUE(fs::exists(film));
    EXPECT_TRUE(scan.isKept()) << "the rest is as it was";

    scan.measureAgain();
    scene.waitUntil([&] { return scan.hasTree(); });
    EXPECT_FALSE(scan.isKept());
    EXPECT_TRUE(scan.keptStatement().isEmpty());
    scene.waitUntil([&] { return *looks == 1; });
}

TEST_F(LastScanOf, IsNotShownToAStartThatAsksForSomething) {
    scene.environment.options.openScreen = Screen::journal;
    EXPECT_FALSE(app().kept()->isOpeningLast());
    QTest::qWait(50);
    EXPECT_TRUE(app().scan()->isIdle());
}

TEST_F(LastScanOf, GivesWayToANewOneWithoutLosingTheUsersPlace) {
    scene.environment.settings->setValue(QStringLiteral("measureAtStart"), true);
    const auto gate = std::make_shared<std::promise<void>>();
    scene.environment.scan = [scan = scene.environment.scan, opened = gate->get_future().share()](
                                 const auto& root, const auto& token, const auto& progress,
                                 const auto& exclusions) {
        opened.wait();
        return scan(root, token, progress, exclusions);
    };
    auto& scan = *app().scan();
    auto& map = *app().map();
    scene.waitUntil([&] { return scan.isKept() && app().rescan()->isRunning(); });
    EXPECT_FALSE(scan.isScanning()) << "the old picture stays in use";
    map.show(node(home.path("Videos")));
    map.select(node(copy));
    for (const auto& path : {film, copy})
        map.ticking()->toggle(node(path));
    scene.waitUntil([&] { return map.ticking()->ticks()->count() == 2; });
    home.file("Albums/cover.png", std::size_t{900'000}); // which is numbered before them
    home.file("Videos/a.mkv", std::size_t{300'000});
    const auto former = node(copy);
    gate->set_value();
    scene.waitUntil([&] { return !scan.isKept(); });
    EXPECT_NE(node(copy), former);
    EXPECT_EQ(map.focus(), node(home.path("Videos")));
    EXPECT_EQ(map.selectedNode(), node(copy));
    ASSERT_EQ(map.ticking()->ticks()->count(), 1) << "the other one has changed";
    EXPECT_EQ(map.ticking()->ticks()->items().front().item.path, copy);
    app().moves()->review(map.ticking()->ticks());
    EXPECT_TRUE(app().moves()->isConfirming());
}

TEST_F(LastScanOf, StaysWhereMeasuringIsEndedByAMove) {
    scene.environment.settings->setValue(QStringLiteral("measureAtStart"), true);
    scene.environment.scan = [](const auto& root, const auto& token, const auto&, const auto&) {
        while (!token.isCancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return ScanResult{.tree = FileTree(root), .cancelled = true, .startedAt = {}, .firstProgress = {}};
    };
    auto& map = *app().map();
    scene.waitUntil([&] { return app().rescan()->isRunning(); });
    map.ticking()->toggle(node(copy));
    scene.waitUntil([&] { return map.ticking()->ticks()->count() == 1; });
    app().moves()->review(map.ticking()->ticks());
    app().moves()->confirm();
    scene.waitUntil([&] { return app().moves()->isReporting() && !app().treeEdits().isBusy(); });
    EXPECT_FALSE(app().rescan()->isRunning() || fs::exists(copy));
    EXPECT_TRUE(app().scan()->isKept());
}

namespace {

/// A window that opens with a scan of the sample disk.
struct WindowWithLastScan : WindowScene {
    WindowWithLastScan() { SampleDisk::keepAsLast(environment, folder()); }
    ScanArchive archive() const { return ScanArchive(environment.scansFolder); }
    void show(int width, int height, double scale) {
        open(width, height);
        if (scale != 1)
            setFontScale(scale);
        EXPECT_TRUE(waitUntil([this] { return app().scan()->isKept(); }));
        settle();
    }
};

} // namespace

TEST(LastScanInTheWindow, LooksTheSameInEverySize) {
    for (const auto& [suffix, width, height, scale] :
         {std::tuple("", 1440, 900, 1.0), {"-800x560", 800, 560, 1.0}, {"-large-font", 1440, 900, 2.0}}) {
        WindowWithLastScan scene;
        scene.show(width, height, scale);
        for (const auto* const screen : {"overview", "map", "tidy"}) {
            scene.app().setScreenName(QLatin1String(screen));
            scene.settle();
            EXPECT_TRUE(scene.says(QStringLiteral("Measured yesterday at "))) << screen;
            keepPicture(scene, QStringLiteral("last-%1%2").arg(QLatin1String(screen), QLatin1String(suffix)));
        }
        scene.press(Qt::Key_Comma, Qt::ControlModifier);
        ASSERT_TRUE(scene.waitUntil([&] { return scene.app().keeping()->isAny(); }));
        scene.item(QStringLiteral("settings.keep"))->forceActiveFocus(Qt::TabFocusReason);
        scene.settle();
        keepPicture(scene, QStringLiteral("last-settings") + QLatin1String(suffix));
    }
}

TEST(LastScanInTheWindow, GivesWayToANewOneWithoutScrollingTheLists) {
    for (const auto& [list, head] :
         {std::pair(QStringLiteral("large.table"), QStringLiteral("large.head.0")),
          std::pair(QStringLiteral("map.list"), QStringLiteral("map.list.head.0"))}) {
        WindowWithLastScan scene;
        scene.environment.settings->setValue(QStringLiteral("measureAtStart"), true);
        scene.holdScans();
        scene.show(1440, 400, 1);
        scene.app().setScreenName(list.section(QLatin1Char('.'), 0, 0));
        scene.settle();
        auto& view = *qvariant_cast<QQuickItem*>(scene.item(list)->property("contentItem"));
        // Not as far as they go: they get taller when it is not said any more that the scan is an old one.
        const double place = std::floor((view.property("contentHeight").toDouble() - view.height()) / 4);
        ASSERT_GT(place, 5) << list.toStdString() << " has to be longer than its place";
        view.setProperty("contentY", place);
        scene.releaseScans();
        ASSERT_TRUE(scene.waitUntil(
            [&] { return !scene.app().scan()->isKept() && !scene.app().largeOld()->isBusy(); }));
        scene.settle();
        EXPECT_EQ(view.property("contentY").toDouble(), place) << list.toStdString();
        scene.click(head);
        EXPECT_TRUE(scene.waitUntil([&] { return view.property("contentY").toDouble() < place; }))
            << list.toStdString() << ": in another order, what has the focus is in sight";
    }
}

TEST(LastScanInTheWindow, ScansAreKeptUntilTheUserSaysOtherwiseTwice) {
    WindowWithLastScan scene;
    scene.show(1440, 900, 1);
    const auto turnOff = [&] {
        scene.press(Qt::Key_Comma, Qt::ControlModifier);
        EXPECT_TRUE(scene.waitUntil([&] { return scene.app().keeping()->isAny(); }));
        scene.item(QStringLiteral("settings.keep"))->forceActiveFocus(Qt::TabFocusReason);
        scene.press(Qt::Key_Space);
        EXPECT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("clearScans.cancel")); }));
        scene.settle();
    };
    const auto isOn = [&] {
        return scene.item(QStringLiteral("settings.keep"))->property("checked").toBool();
    };
    turnOff();
    EXPECT_TRUE(scene.says(QStringLiteral("Remove 1 kept scan?")));
    scene.press(Qt::Key_Return);
    scene.settle();
    EXPECT_TRUE(isOn() && scene.app().keeping()->keeps()) << "Enter is no yes";
    EXPECT_EQ(scene.archive().size().scans, 1);
    turnOff();
    // Over the settings, whose texts it hides.
    scene.picture().save(QStringLiteral(ORBEL_SNAPSHOTS "/last-clear-light.png"));
    scene.click(QStringLiteral("clearScans.remove"));
    ASSERT_TRUE(scene.waitUntil([&] { return !scene.app().keeping()->isAny(); }));
    EXPECT_FALSE(isOn());
    EXPECT_EQ(scene.archive().size().scans, 0);
    EXPECT_FALSE(scene.environment.settings->value(QStringLiteral("keepScans")).toBool());
    EXPECT_FALSE(scene.item(QStringLiteral("settings.measureAtStart"))->isEnabled());
}

} // namespace orbel::test
