#include "Models/MapWords.h"
#include "ModelScene.h"
#include "Support/TreeBuilder.h"
#include "Views/TreemapItem.h"
#include "Views/TreemapPainter.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QQmlProperty>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

/// The sample is nearly all that the volume has in use: what was not measured is a small part of the map.
constexpr std::uint64_t unit = 4'000'000'000;

/// A home with folders in folders, and many files too small to be drawn.
FileTree sampleTree() {
    TreeBuilder disk("/");
    const auto home = disk.folder(disk.folder(0, "home"), "mira");
    const auto videos = disk.folder(home, "Videos");
    disk.file(videos, "ridge.mov", 40 * unit);
    disk.file(videos, "lake.mov", 20 * unit);
    const auto machines = disk.folder(home, "virtual-machines");
    disk.file(machines, "win11.qcow2", 30 * unit);
    const auto cache = disk.folder(home, ".cache");
    disk.file(cache, "wheels.zip", 5 * unit);
    for (int i = 0; i < 300; ++i)
        disk.file(cache, "object" + std::to_string(i), unit / 5000);
    disk.file(disk.folder(0, "usr"), "libLLVM.so", 10 * unit);
    return disk.build();
}

/// The window on the map of the sample.
class MapScene : public WindowScene {
public:
    explicit MapScene(int width = 1440, int height = 900) {
        environment.scan = [](const std::string&, const ScanCancellation&, const ScanProgressCallback&,
                              const Exclusions&) {
            return ScanResult{.tree = sampleTree(), .startedAt = {}, .firstProgress = {}, .duration = 1};
        };
        open(width, height);
        app().scan()->scanDisk();
        EXPECT_TRUE(waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; }));
        app().setScreenName(QStringLiteral("map"));
        settle();
        view = qobject_cast<TreemapItem*>(item(QStringLiteral("map.view")));
        // The map has the focus already; the keyboard comes to it anew.
        item(QStringLiteral("sidebar.map"))->forceActiveFocus(Qt::TabFocusReason);
        view->forceActiveFocus(Qt::TabFocusReason);
        settle();
    }

    int tile(std::string_view label) const {
        const auto& tiles = view->tiles();
        const auto found = std::ranges::find(tiles, label, &TreemapTile::label);
        EXPECT_NE(found, tiles.end()) << label;
        return found == tiles.end() ? 0 : found->id;
    }
    QString selected() const { return view->map()->selection().name; }
    QString shown() const { return view->map()->focusName(); }

    /// A point of the tile that belongs to none of its children.
    QPoint pointIn(std::string_view label) const {
        const QRectF box = view->boxAt(tile(label));
        return view
            ->mapToScene(box.topLeft()
                         + QPointF(std::min(8.0, box.width() / 2), std::min(8.0, box.height() / 2)))
            .toPoint();
    }
    void clickTile(std::string_view label, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(&window(), button, Qt::NoModifier, pointIn(label));
        settle();
    }
    void hoverTile(std::string_view label) {
        QTest::mouseMove(&window(), pointIn(label));
        settle();
    }
    /// Waits for a zoom to end.
    void show(const char* folder) {
        EXPECT_TRUE(waitUntil([&] { return shown() == QLatin1String(folder) && !view->isHeld(); })) << folder;
        settle();
    }

    TreemapItem* view = nullptr;
};

} // namespace

TEST(WindowMap, ThePointerTellsAndLaysNothingOut) {
    MapScene scene;
    scene.clickTile("lake.mov");
    const int layouts = scene.view->layouts();
    for (const auto* label : {"ridge.mov", "Videos", "win11.qcow2", "libLLVM.so", "lake.mov"}) {
        scene.hoverTile(label);
        EXPECT_EQ(scene.view->hoverBox(), scene.view->boxAt(scene.tile(label)));
        EXPECT_TRUE(scene.view->status().contains(QLatin1String(label)))
            << scene.view->status().toStdString();
        EXPECT_EQ(scene.view->hoverHint(), QString());
    }
    const auto& tiles = scene.view->tiles();
    const auto merged = std::ranges::find_if(
        tiles, [](const TreemapTile& tile) { return tile.label.ends_with("smaller items"); });
    ASSERT_NE(merged, tiles.end());
    scene.hoverTile(merged->label);
    EXPECT_NE(scene.view->hoverHint(), QString());
    EXPECT_EQ(scene.view->layouts(), layouts);
    EXPECT_EQ(scene.selected(), QStringLiteral("lake.mov"));
}

TEST(WindowMap, TheMarksLeaveTheWordsOfATileFree) {
    MapScene scene;
    const auto widestMark = [&] {
        scene.settle();
        double widest = 0;
        for (const auto* name : {"map.focus", "map.selected"}) {
            std::vector<QQuickItem*> open{scene.item(QLatin1String(name))};
            while (!open.empty()) {
                auto* const item = open.back();
                open.pop_back();
                const auto children = item->childItems();
                open.insert(open.end(), children.begin(), children.end());
                if (const auto border = item->property("border"); border.isValid() && item->isVisible())
                    widest = std::max(
                        widest, item->mapToItem(scene.view, {0, 0}).x() - scene.view->currentBox().x()
                                    + QQmlProperty(item, QStringLiteral("border.width")).read().toDouble());
            }
        }
        return widest;
    };
    for (const auto key : {Qt::Key_Home, Qt::Key_Down, Qt::Key_Right}) {
        scene.press(key);
        EXPECT_TRUE(scene.view->isFocusShown());
        EXPECT_GT(widestMark(), 1);
        EXPECT_LE(widestMark(), 4);
    }
}

TEST(WindowMap, ATileOfSmallerItemsSaysHowManyAsLongAsANumberFits) {
    const MapScene withTheFontsOfTheWindow;
    const auto isLabelled = [](double width, double height, std::uint32_t count) {
        QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGB32);
        QPainter painter(&image);
        TreemapTile tile;
        tile.content = TreemapTile::SmallerItems{.parent = 0, .count = count};
        tile.rect = {.x = 0, .y = 0, .width = width, .height = height};
        const TreemapPainter::Style style{
            .colors = MapColors::light(), .family = QStringLiteral("Noto Sans"), .scale = 1};
        TreemapPainter(painter, style).draw(std::span(&tile, 1));
        for (int y = 0; y + 1 < image.height(); ++y) {
            for (int x = 0; x + 1 < image.width(); ++x) {
                if (image.pixel(x, y) != image.pixel(0, 0))
                    return true;
            }
        }
        return false;
    };
    for (const auto width : {300.0, 90.0, 64.0, 46.0})
        EXPECT_TRUE(isLabelled(width, 200, 1234)) << width;
    EXPECT_TRUE(isLabelled(64, 18, 12));
    EXPECT_FALSE(isLabelled(12, 200, 1234)) << "a number that is cut is another number";
    EXPECT_EQ(smallerItemsText(1), QStringLiteral("1 smaller item"));
    EXPECT_EQ(smallerItemsText(1234), QStringLiteral("1,234 smaller items"));
}

TEST(WindowMap, KeysWalkFromTileToTileAndFromFolderToFolder) {
    MapScene scene;
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("map.view")));
    EXPECT_TRUE(scene.view->isFocusShown());
    scene.press(Qt::Key_Home);
    EXPECT_EQ(scene.selected(), QStringLiteral("home"));
    scene.press(Qt::Key_Down);
    EXPECT_EQ(scene.selected(), QStringLiteral("mira"));
    scene.press(Qt::Key_Return);
    scene.show("mira");
    scene.press(Qt::Key_Left);
    const auto first = scene.selected();
    EXPECT_NE(first, QString());
    scene.press(Qt::Key_Backspace);
    scene.show("home");
    EXPECT_EQ(scene.selected(), QStringLiteral("mira")) << "where one came from";
    scene.press(Qt::Key_Left, Qt::AltModifier);
    scene.show("mira");
    scene.press(Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(scene.view->map()->focus(), 0U);
    EXPECT_FALSE(scene.view->map()->canGoUp());
    scene.clickTile("ridge.mov");
    EXPECT_FALSE(scene.view->isFocusShown()) << "only where a keyboard is used";
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied, QStringLiteral("/home/mira/Videos/ridge.mov"));
}

TEST(WindowMap, TypingFindsATile) {
    MapScene scene;
    for (const auto key : {Qt::Key_R, Qt::Key_I})
        QTest::keyClick(&scene.window(), key);
    EXPECT_EQ(scene.selected(), QStringLiteral("ridge.mov"));
    QTest::qWait(1100);
    scene.press(Qt::Key_L);
    const auto first = scene.selected();
    EXPECT_TRUE(first.startsWith(QLatin1Char('l')));
    QTest::qWait(1100);
    scene.press(Qt::Key_L);
    EXPECT_TRUE(scene.selected().startsWith(QLatin1Char('l')));
    EXPECT_NE(scene.selected(), first) << "the next one";
    QTest::keyClick(&scene.window(), Qt::Key_Q);
    EXPECT_TRUE(scene.selected().startsWith(QLatin1Char('l'))) << "nothing begins so";
}

TEST(WindowMap, ListAndMapShowTheSame) {
    MapScene scene;
    scene.view->map()->show(*scene.view->map()->tree().index("/home/mira", PathCanonicalizer::shared()));
    scene.settle();
    auto* const list = scene.item(QStringLiteral("map.list"));
    list->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_End);
    EXPECT_EQ(scene.selected(), QStringLiteral(".cache"));
    EXPECT_EQ(scene.view->selectedTile(), scene.tile(".cache"));
    scene.press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(scene.requests().copied, QStringLiteral("/home/mira/.cache"));
    scene.clickTile("win11.qcow2");
    EXPECT_EQ(list->property("currentIndex").toInt(), 1) << "the row of what it lies in";
    EXPECT_TRUE(scene.says(QStringLiteral("3 items")));

    scene.click(QStringLiteral("map.kind.1"));
    EXPECT_TRUE(scene.says(QStringLiteral("filtered to Video, 240.0 GB")));
    EXPECT_TRUE(scene.isShown(QStringLiteral("map.filter")));
    scene.click(QStringLiteral("map.filter"));
    EXPECT_FALSE(scene.isShown(QStringLiteral("map.filter")));
}

TEST(WindowMap, AMenuKeepsToItsItem) {
    MapScene scene;
    scene.clickTile("ridge.mov", Qt::RightButton);
    EXPECT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Video · 160.0 GB")); }));
    QTest::mouseMove(&scene.window(), scene.pointIn("libLLVM.so"));
    scene.settle();
    scene.click(QStringLiteral("map.menu.copy"));
    EXPECT_EQ(scene.requests().copied, QStringLiteral("/home/mira/Videos/ridge.mov"));
}

TEST(WindowMap, EveryMarkIsDrawn) {
    MapScene scene(800, 560);
    scene.clickTile("lake.mov");
    scene.hoverTile("win11.qcow2");
    scene.view->setTicked(
        {*scene.view->map()->tree().index("/home/mira/Videos/ridge.mov", PathCanonicalizer::shared())});
    scene.settle();
    const auto picture = scene.picture();
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(ORBEL_SNAPSHOTS)));
    EXPECT_TRUE(picture.save(QStringLiteral(ORBEL_SNAPSHOTS "/map-marks-800x560.png")));
    const auto colourAt = [&](std::string_view label, QPointF fromUpperRight) {
        const QRectF box = scene.view->boxAt(scene.tile(label));
        const auto place =
            scene.view->mapToScene(box.topRight() + fromUpperRight) * qGuiApp->devicePixelRatio();
        return picture.pixelColor(place.toPoint()).name();
    };
    const QPointF edge(-2, 1);
    const QPointF within(-30, 8);
    EXPECT_EQ(colourAt("lake.mov", edge), QStringLiteral("#0b6170")) << "selected";
    EXPECT_EQ(colourAt("win11.qcow2", edge), QStringLiteral("#15211f")) << "hovered";
    EXPECT_EQ(colourAt("ridge.mov", edge), QStringLiteral("#d5b4f9"));
    EXPECT_EQ(colourAt("ridge.mov", {-18, 8}), QStringLiteral("#15211f")) << "ticked";
    EXPECT_EQ(colourAt("libLLVM.so", edge), QStringLiteral("#4459a9"));

    scene.view->map()->toggleKind(static_cast<int>(FileKind::video));
    scene.settle();
    const auto filtered = scene.picture();
    EXPECT_TRUE(filtered.save(QStringLiteral(ORBEL_SNAPSHOTS "/map-filtered-800x560.png")));
    const auto pale = scene.view->mapToScene(scene.view->boxAt(scene.tile("libLLVM.so")).topRight() + within)
                      * qGuiApp->devicePixelRatio();
    EXPECT_GT(filtered.pixelColor(pale.toPoint()).lightness(),
              QColor(QStringLiteral("#4459a9")).lightness() + 20);
}

TEST(WindowMap, AssistiveTechnologyReachesEveryTile) {
    MapScene scene;
    auto* const list = QAccessible::queryAccessibleInterface(scene.view);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Map of This disk"));
    ASSERT_EQ(list->childCount(), scene.view->tileCount());

    // From the window down, as a screen reader goes.
    const std::function<bool(QAccessibleInterface*)> holdsTheMap = [&](QAccessibleInterface* above) {
        for (int i = 0; i < above->childCount(); ++i) {
            auto* const child = above->child(i);
            if (child != nullptr && (child->object() == scene.view || holdsTheMap(child)))
                return true;
        }
        return false;
    };
    EXPECT_TRUE(holdsTheMap(QAccessible::queryAccessibleInterface(&scene.window())));

    const int number = scene.tile("ridge.mov");
    auto* const tile = list->child(number);
    ASSERT_NE(tile, nullptr);
    const auto share = shareText(40 * unit, scene.view->map()->focusBytes());
    EXPECT_EQ(tile->text(QAccessible::Name),
              QStringLiteral("ridge.mov, Video, 160.0 GB, %1 of This disk").arg(share));
    EXPECT_EQ(list->indexOfChild(tile), number);
    EXPECT_EQ(tile->parent(), list);
    EXPECT_EQ(list->childAt(tile->rect().center().x(), tile->rect().center().y()), tile);
    EXPECT_FALSE(tile->state().selected);
    tile->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(scene.selected(), QStringLiteral("ridge.mov"));
    EXPECT_TRUE(tile->state().selected);
    EXPECT_TRUE(tile->state().focused);
    EXPECT_EQ(list->focusChild(), tile);

    scene.view->map()->show(*scene.view->map()->tree().index("/usr", PathCanonicalizer::shared()));
    scene.settle();
    ASSERT_EQ(list->childCount(), 1) << "what was laid out anew";
    EXPECT_TRUE(list->child(0)->text(QAccessible::Name).startsWith(QStringLiteral("libLLVM.so")));
}

TEST(WindowMap, FollowsTheTree) {
    ModelScene scene;
    auto& map = *scene.model().map();
    const auto tree = std::make_shared<FileTree>(sampleTree());
    const auto at = [&](const char* path) { return *map.tree().index(path, PathCanonicalizer::shared()); };
    map.setTree(tree, std::nullopt);
    map.show(at("/home/mira/Videos/lake.mov"));
    EXPECT_EQ(map.focusName(), QStringLiteral("Videos"));
    EXPECT_EQ(map.selection().name, QStringLiteral("lake.mov"));

    auto removed = std::make_shared<FileTree>(*tree);
    removed->remove(std::array{at("/home/mira/Videos/lake.mov")});
    map.setTree(removed, std::nullopt);
    EXPECT_EQ(map.focusName(), QStringLiteral("Videos"));
    EXPECT_FALSE(map.selection().valid) << "it is gone";
    auto more = std::make_shared<FileTree>(*removed);
    more->remove(std::array{at("/home/mira")});
    map.setTree(more, std::nullopt);
    EXPECT_EQ(map.focusName(), QStringLiteral("home")) << "the nearest that is left";

    map.setTree(tree, std::nullopt);
    map.show(at("/home/mira/Videos"));
    map.setTree(std::make_shared<FileTree>(), std::nullopt);
    EXPECT_EQ(map.list()->rows()->rowCount(), 0);
    map.setTree(std::make_shared<FileTree>(sampleTree()), std::nullopt);
    EXPECT_EQ(map.focusName(), QStringLiteral("Videos")) << "measured again";
    EXPECT_FALSE(map.canGoBack());
}

} // namespace orbel::test
