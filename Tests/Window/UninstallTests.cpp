#include "AppModel/AppsFlow.h"
#include "AppModel/MoveFlow.h"
#include "SampleApps.h"
#include "WindowScene.h"

#include <atomic>
#include <gtest/gtest.h>

namespace orbel::test {

namespace {

struct UninstallInTheWindow : testing::Test {
    void open(int width = 1440, int height = 900) {
        scene.environment.home = sample.home.path();
        scene.environment.seenPackagesPath = scene.folder() + "/installed.json";
        scene.environment.installedApps = [apps = sample.inventory] { return apps; };
        scene.environment.installedIds = SampleApps::installedIds;
        scene.environment.runningPrograms = [told = isRunning, aster = sample.runningAster()] {
            return *told ? std::vector{aster} : std::vector<platform::RunningProgram>();
        };
        scene.environment.askToQuit = [told = isRunning](const auto& /*running*/) {
            *told = false;
            return true;
        };
        scene.environment.options.openScreen = Screen::uninstall;
        scene.open(width, height);
        rest();
    }
    void rest() {
        EXPECT_TRUE(scene.waitUntil([this] { return flow().isLoaded() && !flow().isBusy(); }));
        scene.settle();
    }
    AppsFlow& flow() { return *scene.app().apps(); }
    bool hasFocusIn(const QString& name) {
        const auto* item = scene.window().activeFocusItem();
        while (item != nullptr && item->objectName() != name)
            item = item->parentItem();
        return item != nullptr;
    }

    SampleApps sample;
    std::shared_ptr<std::atomic<bool>> isRunning = std::make_shared<std::atomic<bool>>(false);
    WindowScene scene;
};

} // namespace

TEST_F(UninstallInTheWindow, KeysLeadFromAnAppToItsLeftoversAndToTheConfirmation) {
    open();
    EXPECT_TRUE(hasFocusIn(QStringLiteral("uninstall.apps")));
    EXPECT_EQ(flow().selected().name, QStringLiteral("Aster"));
    scene.press(Qt::Key_B);
    rest();
    EXPECT_EQ(flow().selected().name, QStringLiteral("Birch"));
    scene.click(QStringLiteral("uninstall.command.copy"));
    scene.press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("uninstall.find")));
    for (const auto key : {Qt::Key_A, Qt::Key_S, Qt::Key_T})
        scene.press(key);
    EXPECT_TRUE(scene.says(QStringLiteral("1 of 13 apps")));
    EXPECT_TRUE(scene.says(QStringLiteral("Birch"))) << "it stays selected";
    scene.press(Qt::Key_Down);
    rest();
    EXPECT_EQ(flow().selected().name, QStringLiteral("Aster"));
    scene.press(Qt::Key_Tab);
    EXPECT_TRUE(hasFocusIn(QStringLiteral("uninstall.leftovers")));
    EXPECT_EQ(flow().ticks()->count(), 1);
    scene.press(Qt::Key_Space);
    EXPECT_EQ(flow().ticks()->count(), 2) << "the app itself";
    scene.click(QStringLiteral("uninstall.tick.~/.cache/org.example.Aster"));
    EXPECT_EQ(flow().ticks()->count(), 1);
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied.toStdString(), sample.home.path(".cache/org.example.Aster"));
    scene.press(Qt::Key_Delete);
    EXPECT_TRUE(scene.app().moves()->isConfirming());
    EXPECT_EQ(scene.app().moves()->items()->items().front().item.path, sample.app("Aster").path);
}

TEST_F(UninstallInTheWindow, ControlATicksAllThatMayMoveOfTheApp) {
    open();
    int mayMove = 0;
    for (int row = 0; row < flow().leftovers()->rowCount(); ++row) {
        const auto* const item = flow().leftovers()->itemAt(row);
        mayMove += item != nullptr && item->item.isSelectable() ? 1 : 0;
    }
    scene.item(QStringLiteral("uninstall.leftovers"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(flow().ticks()->count(), mayMove);
    EXPECT_GT(mayMove, 1);
    scene.press(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(flow().ticks()->count(), 0);
}

TEST_F(UninstallInTheWindow, ARunningAppIsAskedToQuitAndThenUnlocked) {
    *isRunning = true;
    open();
    EXPECT_TRUE(scene.says(QStringLiteral("Aster is running.")));
    scene.click(QStringLiteral("uninstall.note.action"));
    ASSERT_TRUE(scene.waitUntil([this] { return !flow().selected().runningText.startsWith(u"running"); }));
    rest();
    EXPECT_FALSE(scene.isShown(QStringLiteral("uninstall.note")));
    EXPECT_EQ(flow().ticks()->count(), 1);
}

TEST_F(UninstallInTheWindow, KeysLeadToWhatARemovedAppLeft) {
    open();
    EXPECT_TRUE(scene.says(QStringLiteral("Left by removed applications")));
    scene.press(Qt::Key_End);
    rest();
    EXPECT_EQ(flow().selected().name, QStringLiteral("poplar"));
    EXPECT_TRUE(scene.says(QStringLiteral("poplar is not installed any more.")));
    scene.press(Qt::Key_Up);
    rest();
    EXPECT_EQ(flow().ticks()->count(), 1);
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied.toStdString(), sample.home.path(".cache/org.example.Willow"));
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Space);
    EXPECT_EQ(flow().ticks()->count(), 2);
    scene.press(Qt::Key_Delete);
    EXPECT_TRUE(scene.app().moves()->isConfirming());
    scene.press(Qt::Key_Escape);
    scene.click(QStringLiteral("uninstall.note.action"));
    rest();
    EXPECT_FALSE(flow().selected().removed);
    EXPECT_EQ(flow().list()->rowCount(), 14);
    scene.press(Qt::Key_F, Qt::ControlModifier);
    scene.press(Qt::Key_B);
    EXPECT_FALSE(scene.says(QStringLiteral("Left by removed applications"))) << "none of them matches";
}

TEST_F(UninstallInTheWindow, WhereThereIsLittleRoomTheListOrTheAppIsShown) {
    open(800, 560);
    EXPECT_FALSE(scene.isShown(QStringLiteral("uninstall.leftovers")));
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(scene.isShown(QStringLiteral("uninstall.apps")));
    EXPECT_TRUE(hasFocusIn(QStringLiteral("uninstall.leftovers")));
    scene.press(Qt::Key_Escape);
    EXPECT_TRUE(hasFocusIn(QStringLiteral("uninstall.apps")));
    scene.press(Qt::Key_Return);
    scene.click(QStringLiteral("uninstall.back"));
    EXPECT_TRUE(scene.isShown(QStringLiteral("uninstall.apps")));
    scene.press(Qt::Key_End);
    scene.press(Qt::Key_Return);
    rest();
    scene.click(QStringLiteral("uninstall.note.action"));
    rest();
    EXPECT_TRUE(hasFocusIn(QStringLiteral("uninstall.apps")))
        << "what was let stay is not to be seen any more";
}

} // namespace orbel::test
