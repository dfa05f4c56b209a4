#include "AppModel/LargeOldFlow.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <QTest>

namespace orbel::test {

namespace {

const std::array focusScreens{"overview", "map", "large", "duplicates", "uninstall", "tidy", "journal"};

bool isWithin(const QQuickItem& item, const QString& name) {
    for (const auto* at = &item; at != nullptr; at = at->parentItem()) {
        if (at->objectName() == name)
            return true;
    }
    return false;
}

/// Whether keys reach something that is to be seen, in the content of this screen.
testing::AssertionResult focusIsIn(WindowScene& scene, const QString& screen) {
    scene.settle();
    const auto* const item = scene.window().activeFocusItem();
    if (item == nullptr)
        return testing::AssertionFailure() << screen.toStdString() << ": nothing has the focus";
    // While something runs, its only button is in the toolbar.
    const bool isStop = item->objectName() == screen + QLatin1String(".stop");
    if (item->isVisible() && item->isEnabled() && isWithin(*item, screen)
        && (isStop || isWithin(*item, QStringLiteral("screen.content"))))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << screen.toStdString() << ": the focus is on " << item->objectName().toStdString() << " ("
           << item->metaObject()->className() << "), visible " << item->isVisible() << ", enabled "
           << item->isEnabled();
}

bool isMeasured(WindowScene& scene) {
    return scene.waitUntil([&] {
        return scene.app().scan()->scanState() == ScanFlow::ScanState::done
               && scene.app().largeOld()->isKnown() && !scene.app().isShownScreenBusy();
    });
}

void openScreen(WindowScene& scene, std::size_t index) {
    scene.press(Qt::Key_1 + static_cast<int>(index), Qt::ControlModifier);
}

} // namespace

TEST(WindowFocus, IsOnTheContentOfEveryScreenBeforeWhileAndAfterItIsMeasured) {
    for (const auto& [width, height] : {std::pair{1440, 900}, {800, 560}}) {
        WindowScene scene;
        scene.holdScans();
        scene.open(width, height);
        const auto lookAtAll = [&] {
            for (std::size_t i = 0; i < focusScreens.size(); ++i) {
                openScreen(scene, i);
                EXPECT_TRUE(focusIsIn(scene, QLatin1String(focusScreens.at(i))));
                scene.click(QStringLiteral("sidebar.") + QLatin1String(focusScreens.at(i)));
                EXPECT_TRUE(focusIsIn(scene, QLatin1String(focusScreens.at(i)))) << "by a click";
            }
            scene.press(Qt::Key_Comma, Qt::ControlModifier);
            EXPECT_TRUE(focusIsIn(scene, QStringLiteral("settings")));
            scene.press(Qt::Key_F1);
            EXPECT_TRUE(focusIsIn(scene, QStringLiteral("help")));
        };
        lookAtAll();
        scene.press(Qt::Key_F5);
        lookAtAll();
        scene.releaseScans();
        ASSERT_TRUE(isMeasured(scene));
        lookAtAll();
    }
}

TEST(WindowFocus, StaysOnTheScreenThatIsShownWhenAScanBeginsAndEnds) {
    for (std::size_t i = 0; i < focusScreens.size(); ++i) {
        const QLatin1String screen(focusScreens.at(i));
        WindowScene scene;
        scene.open();
        openScreen(scene, i);
        for (int round = 0; round < 2; ++round) {
            scene.holdScans();
            scene.press(Qt::Key_F5);
            EXPECT_TRUE(focusIsIn(scene, screen)) << "it runs";
            scene.releaseScans();
            ASSERT_TRUE(isMeasured(scene));
            EXPECT_TRUE(focusIsIn(scene, screen)) << "it is done";
        }
    }
}

TEST(WindowFocus, IsOnTheMapThatWasAskedForAtTheStartAndSpaceMeasuresNothing) {
    WindowScene scene;
    scene.environment.options.scanPath = "/";
    scene.environment.options.openScreen = Screen::map;
    scene.open();
    ASSERT_TRUE(isMeasured(scene));
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("map.view")));
    const auto version = scene.app().scan()->treeVersion();
    scene.press(Qt::Key_Space);
    EXPECT_EQ(scene.app().scan()->scanState(), ScanFlow::ScanState::done);
    EXPECT_EQ(scene.app().scan()->treeVersion(), version);
}

TEST(WindowFocus, FollowsEveryJump) {
    WindowScene scene;
    scene.open();
    scene.press(Qt::Key_F5);
    ASSERT_TRUE(isMeasured(scene));
    const auto from = [&](std::size_t screen) {
        openScreen(scene, screen);
        scene.settle();
    };
    for (const auto* card : {"large", "duplicates", "tidy"}) {
        const auto name = QStringLiteral("overview.") + QLatin1String(card);
        from(0);
        scene.click(name);
        EXPECT_TRUE(focusIsIn(scene, QLatin1String(card))) << "by a click";
        from(0);
        scene.item(name)->forceActiveFocus(Qt::TabFocusReason);
        scene.press(Qt::Key_Return);
        EXPECT_TRUE(focusIsIn(scene, QLatin1String(card)));
    }
    const QString map = QStringLiteral("map.view");
    for (const auto* list : {"kinds", "folders"}) {
        from(0);
        scene.item(QStringLiteral("overview.") + QLatin1String(list))->forceActiveFocus(Qt::TabFocusReason);
        scene.press(Qt::Key_Return);
        EXPECT_TRUE(focusIsIn(scene, QStringLiteral("map"))) << list;
        EXPECT_TRUE(scene.hasFocus(map)) << list;
    }
    // A name that is looked for, from another screen and from the map itself.
    for (const std::size_t screen : {std::size_t{0}, std::size_t{1}}) {
        from(screen);
        scene.press(Qt::Key_F, Qt::ControlModifier);
        QTest::keyClick(&scene.window(), 'r');
        QTest::keyClick(&scene.window(), 'i');
        scene.press(Qt::Key_Return);
        ASSERT_TRUE(scene.waitUntil([&] { return scene.app().map()->selectedNode().has_value(); }));
        EXPECT_TRUE(focusIsIn(scene, QStringLiteral("map"))) << "from screen " << screen;
        EXPECT_TRUE(scene.hasFocus(map)) << "from screen " << screen;
    }
    // The menu of a row of another screen.
    from(2);
    scene.press(Qt::Key_Menu);
    scene.click(QStringLiteral("large.menu.zoom"));
    EXPECT_EQ(scene.app().screenName(), QStringLiteral("map"));
    EXPECT_TRUE(scene.hasFocus(map));
    // The same screen again, in place of a page.
    scene.press(Qt::Key_Comma, Qt::ControlModifier);
    scene.app().setScreen(Screen::map);
    EXPECT_TRUE(focusIsIn(scene, QStringLiteral("map")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("settings")));
}

TEST(WindowFocus, LeavesWhatIsHiddenWithTheWindowsWidth) {
    WindowScene scene;
    scene.open();
    scene.item(QStringLiteral("sidebar.trash"))->forceActiveFocus(Qt::TabFocusReason);
    scene.window().resize(800, 560);
    ASSERT_TRUE(scene.waitUntil([&] { return !scene.isShown(QStringLiteral("sidebar.trash")); }));
    EXPECT_TRUE(focusIsIn(scene, QStringLiteral("overview")));
}

} // namespace orbel::test
