#include "Safety/PathCanonicalizer.h"
#include "Snapshots.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <map>
#include <QGuiApplication>

namespace orbel::test {

namespace {

/// The window over a measured disk, in either direction.
struct TwoWays : WindowScene {
    explicit TwoWays(int width = 1440, int height = 900) {
        open(width, height);
        app().scan()->scanDisk();
        EXPECT_TRUE(waitUntil([this] {
            return app().scan()->scanState() == ScanFlow::ScanState::done && app().largeOld()->isKnown();
        }));
        settle();
    }
    ~TwoWays() { turn(Qt::LeftToRight); }

    void turn(Qt::LayoutDirection direction) {
        QGuiApplication::setLayoutDirection(direction);
        settle();
    }
    /// Shows a screen, or one of the pages beside them.
    void show(const QString& name) {
        if (name == QLatin1String("settings"))
            press(Qt::Key_Comma, Qt::ControlModifier);
        else if (name == QLatin1String("help"))
            press(Qt::Key_F1);
        else
            app().setScreenName(name);
        settle();
    }
    /// Where everything stands that has words, a picture or a name.
    std::map<QQuickItem*, QRectF> places() {
        std::map<QQuickItem*, QRectF> found;
        collectFrom(*window().contentItem(), found);
        return found;
    }

private:
    static void collectFrom(QQuickItem& item, std::map<QQuickItem*, QRectF>& found) {
        if (!item.isVisible())
            return;
        const auto words = item.property("text").toString().trimmed();
        const bool isWords = item.inherits("QQuickText") && !words.isEmpty();
        if ((isWords || item.inherits("QQuickPaintedItem") || !item.objectName().isEmpty()) && item.width() > 0)
            found[&item] = item.mapRectToScene({0, 0, item.width(), item.height()});
        // The map is the same whichever way the window reads.
        if (qobject_cast<TreemapItem*>(&item) != nullptr)
            return;
        for (auto* const child : item.childItems())
            collectFrom(*child, found);
    }
};

const QStringList shownPages{"overview", "map",     "large",    "duplicates", "uninstall",
                             "tidy",     "journal", "settings", "help"};

class WindowMirrored : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(WindowMirrored, HasEverythingOnTheOtherSide) {
    TwoWays scene(GetParam().first, GetParam().second);
    for (const auto& name : shownPages) {
        scene.show(name);
        const auto before = scene.places();
        const auto tiles = [&] {
            return name == QLatin1String("map")
                       ? qobject_cast<TreemapItem*>(scene.item(QStringLiteral("map.view")))->boxAt(2)
                       : QRectF();
        };
        const auto tile = tiles();
        scene.turn(Qt::RightToLeft);
        const auto after = scene.places();
        EXPECT_EQ(before.size(), after.size()) << name.toStdString();
        EXPECT_EQ(tiles(), tile);
        for (const auto& [item, place] : before) {
            const auto turned = after.find(item);
            if (turned == after.end())
                continue;
            EXPECT_NEAR(turned->second.x(), scene.window().width() - place.right(), 1.01)
                << name.toStdString() << ": " << item->metaObject()->className() << ' '
                << item->objectName().toStdString() << " \"" << item->property("text").toString().toStdString()
                << "\" of " << place.x() << " + " << place.width();
        }
        keepPicture(scene, name + QStringLiteral("-mirrored-%1").arg(GetParam().first));
        scene.turn(Qt::LeftToRight);
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, WindowMirrored, testing::Values(std::pair(1440, 900), std::pair(800, 560)),
                         [](const auto& size) { return "Wide" + std::to_string(size.param.first); });

TEST(MirroredWindow, TurnsTheArrowsWithIt) {
    TwoWays scene;
    scene.show(QStringLiteral("settings"));
    scene.item(QStringLiteral("settings.appearance"))->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(scene.app().appearance()->choice(), QStringLiteral("system"));
    scene.turn(Qt::RightToLeft);
    scene.press(Qt::Key_Left);
    EXPECT_EQ(scene.app().appearance()->choice(), QStringLiteral("light")) << "on, which is to the left";
    scene.press(Qt::Key_Right);
    EXPECT_EQ(scene.app().appearance()->choice(), QStringLiteral("system"));

    scene.show(QStringLiteral("map"));
    auto& map = *scene.app().map();
    map.show(*scene.app().scan()->tree()->index("/home/mira", PathCanonicalizer::shared()));
    ASSERT_TRUE(map.canGoBack());
    scene.press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_FALSE(map.canGoBack()) << "back is where its arrow points";
    scene.press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_TRUE(map.canGoBack());
}

} // namespace
} // namespace orbel::test
