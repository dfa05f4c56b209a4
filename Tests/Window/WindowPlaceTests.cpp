#include "Services/WindowPlace.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QGuiApplication>
#include <QScreen>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

struct PlacedWindow : testing::Test {
    TemporaryFolder folder;
    QSettings settings{QString::fromStdString(folder.path("settings.ini")), QSettings::IniFormat};
    const QRect laptop{0, 28, 1366, 740};
    const QRect desk{1366, 0, 2560, 1400};

    WindowPlace::Choice choose(const std::vector<QRect>& screens, bool hasPositions = true) const {
        return WindowPlace::choose(settings, screens, hasPositions);
    }
    void keep(QRect place, bool isMaximized = false) {
        settings.setValue(QStringLiteral("window/size"), place.size());
        settings.setValue(QStringLiteral("window/position"), place.topLeft());
        settings.setValue(QStringLiteral("window/maximized"), isMaximized);
    }
};

} // namespace

TEST_F(PlacedWindow, OpensWithinTheScreen) {
    EXPECT_EQ(choose({desk}).size, QSize(1440, 900));
    EXPECT_EQ(choose({desk}).minimum, QSize(800, 560));
    const auto small = choose({laptop});
    EXPECT_TRUE(small.size.width() <= 1366 && small.size.height() < 740 && small.size.height() > 600);
    EXPECT_FALSE(small.position.has_value());
    const auto tiny = choose({QRect(0, 0, 640, 480)});
    EXPECT_TRUE(tiny.minimum.width() <= 640 && tiny.minimum.height() <= 480);
    EXPECT_EQ(tiny.size, tiny.minimum);
}

TEST_F(PlacedWindow, OpensWhereItWasOnAScreenThatIsStillThere) {
    keep({1500, 60, 1800, 1100}, true);
    EXPECT_EQ(
        choose({laptop, desk}),
        (WindowPlace::Choice{
            .size = {1800, 1100}, .minimum = {800, 560}, .position = QPoint(1500, 60), .isMaximized = true}));
    EXPECT_FALSE(choose({laptop, desk}, false).position.has_value()) << "where windows have no places";
    const auto alone = choose({laptop});
    EXPECT_FALSE(alone.position.has_value());
    EXPECT_TRUE(alone.isMaximized && laptop.size().expandedTo(alone.size) == laptop.size());

    keep({1200, 700, 1000, 600});
    EXPECT_FALSE(choose({QRect(0, 0, 1280, 710)}).position.has_value())
        << "its title could not be taken hold of";
    keep({40, 60, 1340, 1300});
    const auto lower = choose({laptop});
    EXPECT_TRUE(laptop.contains(QRect(lower.position.value_or(QPoint()), lower.size)));
}

TEST_F(PlacedWindow, IsKeptAsTheUserLeavesIt) {
    const auto lifetime = [&](const auto& use) {
        QQuickWindow window;
        const auto properties = WindowPlace::properties(settings);
        for (auto it = properties.begin(); it != properties.end(); ++it)
            window.setProperty(it.key().toLatin1().constData(), it.value());
        const bool opensMaximized =
            properties.value(QStringLiteral("visibility")).toInt() == static_cast<int>(QWindow::Maximized);
        WindowPlace place(window, settings);
        if (opensMaximized)
            window.showMaximized();
        else
            window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        use(window, opensMaximized);
    };
    const QSize left(790, 570);
    lifetime([&](QQuickWindow& window, bool) { window.resize(left); });
    lifetime([&](QQuickWindow& window, bool isMaximized) {
        EXPECT_FALSE(isMaximized);
        EXPECT_EQ(window.size(), left.expandedTo(window.minimumSize()));
        window.showMaximized();
        QTest::qWait(50);
        // As a second start does, which finds it as it is.
        WindowPlace::bringToFront(window);
        EXPECT_EQ(window.visibility(), QWindow::Maximized);
        window.hide();
        WindowPlace::bringToFront(window);
        EXPECT_EQ(window.visibility(), QWindow::Maximized);
        window.close();
    });
    lifetime([&](QQuickWindow& window, bool isMaximized) {
        EXPECT_TRUE(isMaximized);
        EXPECT_EQ(settings.value(QStringLiteral("window/size")).toSize(),
                  left.expandedTo(window.minimumSize()))
            << "what it goes back to";
    });
}

} // namespace orbel::test
