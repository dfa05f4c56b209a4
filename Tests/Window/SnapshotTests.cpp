#include "AppModel/AppsFlow.h"
#include "AppModel/LargeOldFlow.h"
#include "SampleApps.h"
#include "SampleDisk.h"
#include "Snapshots.h"
#include "WindowScene.h"

#include <atomic>
#include <gtest/gtest.h>

namespace orbel::test {

namespace {

void showScreen(WindowScene& scene, const char* screen) {
    scene.app().setScreenName(QLatin1String(screen));
    scene.settle();
}

/// Every screen as somebody sees it who has measured the disk, then the pages beside the screens.
void keepScreens(WindowScene& scene, const QString& suffix) {
    scene.app().showChanges();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().changes()->isKnown(); }));
    scene.settle();
    keepPicture(scene, QStringLiteral("changes") + suffix);
    for (const auto* screen : {"overview", "map", "large", "duplicates", "uninstall", "tidy", "journal"}) {
        showScreen(scene, screen);
        keepPicture(scene, QLatin1String(screen) + suffix);
    }
    scene.app().map()->setByChange(true);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().map()->nodeChanges() != nullptr; }));
    showScreen(scene, "map");
    keepPicture(scene, QStringLiteral("map-changes") + suffix);
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    keepPicture(scene, QStringLiteral("settings") + suffix);
    scene.press(Qt::Key_F1);
    keepPicture(scene, QStringLiteral("help") + suffix);
}

/// The overview's states, ending with a measured disk.
void keepOverview(WindowScene& scene, const QString& suffix) {
    keepPicture(scene, QStringLiteral("overview-first-run") + suffix);
    scene.holdScans();
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("612,408")); }));
    keepPicture(scene, QStringLiteral("overview-scanning") + suffix);
    scene.app().scan()->stop();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->isPartial(); }));
    keepPicture(scene, QStringLiteral("overview-partial") + suffix);
    scene.app().scan()->knownRoots().note(scene.app().scan()->scanRoot(), 1'000'000);
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("About 61 %")); }));
    keepPicture(scene, QStringLiteral("overview-scanning-known") + suffix);
    scene.app().scan()->stop();
    ASSERT_TRUE(scene.waitUntil([&] { return !scene.app().scan()->isScanning(); }));
    scene.releaseScans();
    scene.app().scan()->scanDisk();
    auto& large = *scene.app().largeOld();
    ASSERT_TRUE(scene.waitUntil(
        [&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done && large.isKnown(); }));
    ASSERT_TRUE(scene.waitUntil([&] { return !scene.app().compare()->isBusy(); }));
    for (const auto row : {1U, 4U})
        large.toggleTick(large.largeOldRows().at(row).index);
    scene.settle();
}

} // namespace

struct Sized {
    const char* suffix;
    int width;
    int height;
    double fontScale;
};

class WindowSnapshot : public testing::TestWithParam<Sized> {};

TEST_P(WindowSnapshot, IsNeitherBlankNorCutOff) {
    WindowScene scene;
    scene.keepScan(SampleDisk::lastWeek(), 7);
    scene.open(GetParam().width, GetParam().height);
    scene.setFontScale(GetParam().fontScale);
    const QLatin1String suffix(GetParam().suffix);
    keepOverview(scene, suffix);
    keepScreens(scene, suffix);
}

INSTANTIATE_TEST_SUITE_P(Sizes, WindowSnapshot,
                         testing::Values(Sized{"", 1440, 900, 1}, Sized{"-800x560", 800, 560, 1},
                                         Sized{"-1100x700", 1100, 700, 1}, Sized{"-1920x1080", 1920, 1080, 1},
                                         Sized{"-3840x2160", 3840, 2160, 1},
                                         Sized{"-large-font", 1440, 900, 2}),
                         [](const auto& size) {
                             std::string name(size.param.suffix);
                             std::erase(name, '-');
                             return name.empty() ? "Usual" : name;
                         });

TEST(WindowSnapshotOf, Onboarding) {
    for (const auto& [suffix, width, height, fontScale] :
         {Sized{"", 1440, 900, 1}, Sized{"-800x560", 800, 560, 1}, Sized{"-large-font", 1440, 900, 2}}) {
        WindowScene scene;
        scene.environment.isFullDiskAccessGranted = [](const std::string& /*home*/) {
            return std::optional(false);
        };
        scene.open(width, height);
        scene.setFontScale(fontScale);
        keepPicture(scene, QStringLiteral("onboarding") + QLatin1String(suffix));
    }
}

TEST(WindowSnapshotOf, AppsAndWhatTheyLeave) {
    for (const auto& [suffix, width, height, fontScale] :
         {Sized{"", 1440, 900, 1}, Sized{"-800x560", 800, 560, 1}, Sized{"-large-font", 1440, 900, 2}}) {
        const SampleApps sample;
        WindowScene scene;
        scene.environment.home = sample.home.path();
        scene.environment.installedApps = [apps = sample.inventory] { return apps; };
        scene.environment.installedIds = SampleApps::installedIds;
        const auto isRunning = std::make_shared<std::atomic<bool>>(false);
        scene.environment.runningPrograms = [isRunning, aster = sample.runningAster()] {
            return *isRunning ? std::vector{aster} : std::vector<platform::RunningProgram>();
        };
        scene.environment.options.openScreen = Screen::uninstall;
        scene.environment.options.selectApp = "Birch";
        scene.open(width, height);
        scene.setFontScale(fontScale);
        const auto& flow = *scene.app().apps();
        const auto rest = [&] {
            ASSERT_TRUE(scene.waitUntil([&] { return flow.isLoaded() && !flow.isBusy(); }));
            scene.settle();
        };
        const auto name = QStringLiteral("uninstall-") + QLatin1String("%1") + QLatin1String(suffix);
        rest();
        keepPicture(scene, name.arg(QStringLiteral("package")));
        scene.press(Qt::Key_Home);
        scene.press(Qt::Key_Return);
        rest();
        keepPicture(scene, name.arg(QStringLiteral("own")));
        if (scene.isShown(QStringLiteral("uninstall.back"))) {
            scene.press(Qt::Key_Escape);
            scene.press(Qt::Key_End);
            rest();
            keepPicture(scene, name.arg(QStringLiteral("list")));
            scene.press(Qt::Key_Return);
            rest();
            keepPicture(scene, name.arg(QStringLiteral("removed")));
            continue;
        }
        scene.press(Qt::Key_End);
        rest();
        keepPicture(scene, name.arg(QStringLiteral("removed")));
        scene.press(Qt::Key_Home);
        rest();
        *isRunning = true;
        scene.press(Qt::Key_Down);
        scene.press(Qt::Key_Up);
        rest();
        keepPicture(scene, name.arg(QStringLiteral("running")));
    }
}

TEST(WindowSnapshotOf, TheScansToCompareWith) {
    for (const auto& [suffix, width, height, fontScale] :
         {Sized{"", 1440, 900, 1}, Sized{"-800x560", 800, 560, 1}, Sized{"-large-font", 1440, 900, 2}}) {
        WindowScene scene;
        scene.keepScan(SampleDisk::lastWeek(), 7);
        scene.open(width, height);
        scene.setFontScale(fontScale);
        scene.app().scan()->scanDisk();
        ASSERT_TRUE(scene.waitUntil([&] { return scene.app().compare()->scan() == 0; }));
        scene.app().showChanges();
        scene.settle();
        scene.click(QStringLiteral("changes.since"));
        scene.picture().save(QStringLiteral(ORBEL_SNAPSHOTS "/since-menu") + QLatin1String(suffix)
                             + QLatin1String(".png"));
    }
}

TEST(WindowSnapshotOf, WhatOpensOverAScreen) {
    WindowScene scene;
    scene.open();
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("overview.unreadable")); }));
    scene.settle();
    scene.click(QStringLiteral("overview.volume"));
    for (const auto& appearance : {QStringLiteral("light"), QStringLiteral("dark")}) {
        scene.setAppearance(appearance);
        scene.picture().save(QStringLiteral(ORBEL_SNAPSHOTS "/menu-") + appearance + QLatin1String(".png"));
    }
    scene.press(Qt::Key_Escape);
    scene.click(QStringLiteral("overview.unreadable"));
    for (const auto& appearance : {QStringLiteral("light"), QStringLiteral("dark")}) {
        scene.setAppearance(appearance);
        scene.picture().save(QStringLiteral(ORBEL_SNAPSHOTS "/unreadable-") + appearance
                             + QLatin1String(".png"));
    }
    EXPECT_TRUE(scene.isShown(QStringLiteral("unreadable.list")));
}

} // namespace orbel::test
