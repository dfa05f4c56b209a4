#include "Growth/GrowthStore.h"
#include "SampleDisk.h"
#include "Snapshots.h"
#include "WindowScene.h"

#include <gtest/gtest.h>

namespace orbel::test {

namespace {

void showScreen(WindowScene& scene, const char* screen) {
    scene.app().setScreenName(QLatin1String(screen));
    scene.settle();
}

/// Every screen as somebody sees it who has measured the disk, then the pages beside the screens.
void keepScreens(WindowScene& scene, const QString& suffix) {
    for (const auto* screen : {"overview", "map", "large", "duplicates", "uninstall", "tidy", "journal"}) {
        showScreen(scene, screen);
        keepPicture(scene, QLatin1String(screen) + suffix);
    }
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    keepPicture(scene, QStringLiteral("settings") + suffix);
    scene.press(Qt::Key_F1);
    keepPicture(scene, QStringLiteral("help") + suffix);
}

/// The overview's states, ending with a measured disk.
void keepOverview(WindowScene& scene, const QString& suffix) {
    keepPicture(scene, QStringLiteral("overview-first-run") + suffix);
    scene.holdScans();
    scene.app().scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("612,408")); }));
    keepPicture(scene, QStringLiteral("overview-scanning") + suffix);
    scene.app().stopScan();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().isPartial(); }));
    keepPicture(scene, QStringLiteral("overview-partial") + suffix);
    scene.releaseScans();
    scene.app().scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scanState() == AppModel::ScanState::done; }));
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
    scene.environment.growthFolder = scene.folder() + "/growth";
    const auto lastWeek = currentDate() - std::chrono::days(7);
    EXPECT_FALSE(GrowthStore(scene.environment.growthFolder)
                     .keep(SampleDisk::partlyMeasured().tree, lastWeek)
                     .failure);
    scene.open(GetParam().width, GetParam().height);
    scene.setFontScale(GetParam().fontScale);
    const QLatin1String suffix(GetParam().suffix);
    keepOverview(scene, suffix);
    keepScreens(scene, suffix);
}

INSTANTIATE_TEST_SUITE_P(Sizes, WindowSnapshot,
                         testing::Values(Sized{"", 1440, 900, 1}, Sized{"-800x560", 800, 560, 1},
                                         Sized{"-1100x700", 1100, 700, 1}, Sized{"-1920x1080", 1920, 1080, 1},
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

TEST(WindowSnapshotOf, WhatOpensOverAScreen) {
    WindowScene scene;
    scene.open();
    scene.app().scanDisk();
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
