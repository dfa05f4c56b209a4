#include "PastMoves.h"
#include "RealHome.h"
#include "Safety/PathCanonicalizer.h"
#include "SampleApps.h"
#include "Snapshots.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <map>
#include <QGuiApplication>

namespace orbel::test {

namespace {

/// A window that is turned from one direction of reading to the other.
struct TurningWindow : WindowScene {
    TurningWindow() = default;
    ~TurningWindow() { turn(Qt::LeftToRight); }
    TurningWindow(const TurningWindow&) = delete;
    TurningWindow& operator=(const TurningWindow&) = delete;

    void measure(const std::string& path) {
        app().scan()->startScan(path);
        EXPECT_TRUE(waitUntil([this] {
            return app().scan()->scanState() == ScanFlow::ScanState::done && app().largeOld()->isKnown();
        }));
        settle();
    }
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
    /// Turns what is shown, and keeps a picture of it: everything stands as far from the right as before
    /// from the left.
    void expectMirrored(const QString& name) {
        const auto before = places();
        turn(Qt::RightToLeft);
        const auto after = places();
        EXPECT_EQ(before.size(), after.size()) << name.toStdString();
        for (const auto& [item, place] : before) {
            const auto turned = after.find(item);
            // A list hands the headings of its sections on, and a bar may have grown.
            if (turned == after.end() || turned->second.text != place.text
                || (place.text.isEmpty() && turned->second.rect.size() != place.rect.size()))
                continue;
            // Words in the middle begin at whole pixels, and so may what they are in.
            EXPECT_NEAR(turned->second.rect.x(), window().width() - place.rect.right(), 2)
                << name.toStdString() << ": " << item->metaObject()->className() << ' '
                << item->objectName().toStdString() << " \"" << place.text.toStdString() << "\" of "
                << place.rect.x() << " + " << place.rect.width() << " in "
                << item->parentItem()->metaObject()->className();
        }
        if (isShown(QStringLiteral("confirm.cancel")))
            picture().save(QStringLiteral(ORBEL_SNAPSHOTS "/") + name + QStringLiteral(".png"));
        else
            keepPicture(*this, name);
        turn(Qt::LeftToRight);
    }

private:
    struct Place {
        QRectF rect;
        QString text;
    };

    /// Of everything that has words, a colour, a picture or a name.
    std::map<QQuickItem*, Place> places() {
        std::map<QQuickItem*, Place> found;
        collectFrom(*window().contentItem(), found);
        return found;
    }
    static void collectFrom(QQuickItem& item, std::map<QQuickItem*, Place>& found) {
        if (!item.isVisible())
            return;
        const bool isSentence = item.property("isSentence").toBool();
        const bool isWords =
            item.inherits("QQuickText") && !item.property("text").toString().trimmed().isEmpty();
        if (item.width() > 0
            && (isWords || isSentence || item.inherits("QQuickPaintedItem")
                || item.inherits("QQuickRectangle") || !item.objectName().isEmpty()))
            found[&item] = {item.mapRectToScene({0, 0, item.width(), item.height()}),
                            item.property("text").toString()};
        // A sentence, the map and the mark are the same whichever way the window reads.
        if (isSentence || qobject_cast<TreemapItem*>(&item) != nullptr)
            return;
        for (auto* const child : item.childItems())
            if (!QByteArray(child->metaObject()->className()).startsWith("Mark_"))
                collectFrom(*child, found);
    }
};

class WindowMirrored : public testing::TestWithParam<std::pair<int, int>> {
protected:
    static QString pictureOf(const QString& name) {
        return name + QStringLiteral("-mirrored-%1").arg(GetParam().first);
    }
    static void open(TurningWindow& scene) { scene.open(GetParam().first, GetParam().second); }
};

TEST_P(WindowMirrored, HasEverythingOnTheOtherSide) {
    TurningWindow scene;
    open(scene);
    scene.expectMirrored(pictureOf(QStringLiteral("overview-first-run")));
    scene.holdScans();
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("612,408")); }));
    scene.settle();
    scene.expectMirrored(pictureOf(QStringLiteral("overview-scanning")));
    scene.app().scan()->stop();
    scene.releaseScans();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->isPartial(); }));
    scene.measure("/");
    for (const auto* name :
         {"overview", "map", "large", "duplicates", "uninstall", "tidy", "journal", "settings", "help"}) {
        scene.show(QLatin1String(name));
        scene.expectMirrored(pictureOf(QLatin1String(name)));
    }
    scene.show(QStringLiteral("map"));
    auto& map = *qobject_cast<TreemapItem*>(scene.item(QStringLiteral("map.view")));
    const auto tile = map.boxAt(2);
    const auto& tree = *scene.app().scan()->tree();
    scene.app().map()->show(*tree.index("/home/mira/Projects", PathCanonicalizer::shared()));
    scene.app().map()->select(*tree.index("/home/mira/Projects/lidar-viewer with a name that is longer than "
                                          "most columns are",
                                          PathCanonicalizer::shared()));
    scene.settle();
    scene.expectMirrored(pictureOf(QStringLiteral("map-selected")));
    scene.turn(Qt::RightToLeft);
    scene.app().map()->goToRoot();
    scene.settle();
    EXPECT_EQ(map.boxAt(2), tile) << "the map itself stays as it is";
}

TEST_P(WindowMirrored, HasItsRowsOnTheOtherSide) {
    TurningWindow scene;
    const SampleApps sample;
    PastMoves past;
    for (const auto* name : {"Videos/harbour.mkv", "Downloads/harbour.mkv", "Downloads/old/harbour.mkv"})
        past.home.file(name, std::string(2'000'000, 'h'));
    past.home.folder("Downloads/empty/inside");
    past.home.file("snap/poplar/common/state");
    useRealHome(scene.environment, past.home.path());
    scene.environment.journalPath = past.journalPath;
    scene.environment.installedApps = [apps = sample.inventory] { return apps; };
    scene.environment.installedIds = SampleApps::installedIds;
    past.move("old", {"proxies.mov", "statement.pdf"}, "2026-01-02T17:40:00Z");
    past.skip("old", "kit_011.wav", "2026-01-02T17:40:00Z");
    open(scene);
    scene.measure(past.home.path());
    scene.show(QStringLiteral("duplicates"));
    scene.click(QStringLiteral("duplicates.empty.action"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("duplicates.table")); }));
    scene.press(Qt::Key_Down);
    scene.expectMirrored(pictureOf(QStringLiteral("duplicates-filled")));
    for (const auto* name : {"uninstall", "tidy", "journal"}) {
        scene.show(QLatin1String(name));
        ASSERT_TRUE(scene.waitUntil([&] { return !scene.app().isShownScreenBusy(); }));
        if (scene.app().screen() == Screen::uninstall)
            scene.app().apps()->selectNamed("Aster");
        scene.settle();
        ASSERT_TRUE(scene.waitUntil([&] { return !scene.app().isShownScreenBusy(); }));
        scene.settle();
        scene.expectMirrored(pictureOf(QLatin1String(name) + QStringLiteral("-filled")));
    }
    scene.show(QStringLiteral("duplicates"));
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("duplicates.tickBar.review")); }));
    scene.expectMirrored(pictureOf(QStringLiteral("duplicates-ticked")));
    scene.press(Qt::Key_Delete);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("confirm.cancel")); }));
    scene.settle();
    scene.expectMirrored(pictureOf(QStringLiteral("confirm")));
    scene.click(QStringLiteral("confirm.commit"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().moves()->isReporting(); }));
    scene.settle();
    scene.expectMirrored(pictureOf(QStringLiteral("report")));
}

INSTANTIATE_TEST_SUITE_P(Sizes, WindowMirrored, testing::Values(std::pair(1440, 900), std::pair(800, 560)),
                         [](const auto& size) { return "Wide" + std::to_string(size.param.first); });

TEST(MirroredWindow, TurnsTheArrowsWithIt) {
    TurningWindow scene;
    scene.open();
    scene.measure("/");
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
