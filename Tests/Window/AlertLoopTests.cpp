#include "ModelScene.h"

#include <gtest/gtest.h>

namespace orbel::test {
namespace {

const QString settingsKey = QStringLiteral("lowDiskAlert");

TEST(AlertLoop, ChecksAtOnceWhenItIsSwitchedOnAndKeepsTheChoice) {
    ModelScene scene;
    auto& model = scene.model();
    EXPECT_TRUE(scene.posted->messages.empty());
    model.alert()->setEnabled(true);
    EXPECT_EQ(scene.posted->messages.size(), 1);
    EXPECT_EQ(scene.posted->messages.front().body,
              "300 B free. Open Ostrevo Vanto to see where the space went.");
    EXPECT_EQ(scene.posted->permissionRequests, 1);
    model.alert()->setChoice(3);
    EXPECT_TRUE(model.alert()->lowDisk().enabled && model.alert()->lowDisk().threshold == 50'000'000'000);
    EXPECT_EQ(scene.environment.settings->value(settingsKey).toString(),
              QStringLiteral(R"({"enabled":true,"threshold":50000000000})"));

    model.alert()->setEnabled(false);
    model.alert()->setEnabled(true);
    EXPECT_EQ(scene.posted->messages.size(), 1) << "the cooldown outlives the loop";
    scene.world()->now += LowDiskAlert::cooldown;
    model.alert()->setEnabled(false);
    model.alert()->setEnabled(true);
    EXPECT_EQ(scene.posted->messages.size(), 2);
}

struct SwitchedTray final : Tray {
    bool isAvailable() const override { return isThere; }

    bool isThere = false;
};

TEST(AlertLoop, PromisesToGoOnWithoutAWindowOnlyWhereThereIsAPlaceForIt) {
    const auto promised = QStringLiteral("even with its window closed");
    ModelScene scene;
    const auto tray = std::make_shared<SwitchedTray>();
    scene.environment.tray = tray;
    const auto& alert = *scene.model().alert();
    EXPECT_FALSE(alert.explanation().contains(promised));
    tray->isThere = true;
    EXPECT_TRUE(alert.explanation().contains(promised));
}

TEST(AlertLoop, StartsWithTheModelFromWhatWasKept) {
    ModelScene scene;
    scene.environment.settings->setValue(settingsKey,
                                         QStringLiteral(R"({"enabled":true,"threshold":20000000000})"));
    EXPECT_EQ(scene.model().alert()->choice(), 2);
    EXPECT_EQ(scene.posted->messages.size(), 1);
    EXPECT_EQ(scene.posted->permissionRequests, 0) << "only asked for when it is switched on";
}

TEST(AlertLoop, PassesOverAVolumeThatCannotBeReadAndSettingsThatMakeNoSense) {
    ModelScene scene;
    scene.world()->volume.reset();
    scene.environment.settings->setValue(settingsKey, QStringLiteral("{\"enabled\":tr"));
    auto& model = scene.model();
    EXPECT_FALSE(model.alert()->isEnabled());
    EXPECT_EQ(model.alert()->choice(), 1);
    model.alert()->setEnabled(true);
    EXPECT_TRUE(scene.posted->messages.empty());
}

} // namespace
} // namespace orbel::test
