#include "Snapshots.h"
#include "Support/TreeBuilder.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QGuiApplication>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest/QTest>
#include <QWheelEvent>

namespace orbel::test {

namespace {

constexpr std::uint64_t megabyte = 1'000'000;

/// Folders in folders, one of many small ones, and a file beside them.
FileTree foldersInFolders() {
    TreeBuilder disk("/data");
    const auto films = disk.folder(0, "films");
    disk.file(disk.folder(films, "alps"), "ridge.mov", 400 * megabyte);
    disk.file(films, "zoo.mov", 300 * megabyte);
    disk.file(films, "beach.mov", 200 * megabyte);
    const auto cache = disk.folder(0, "cache");
    for (int i = 0; i < 300; ++i)
        disk.file(disk.folder(cache, "part" + std::to_string(100 + i)), "object", megabyte / 10);
    disk.file(0, "archive.zip", 500 * megabyte);
    return disk.build();
}

/// The same with one folder more, which comes first, so that nodes have other numbers.
FileTree foldersAfterARescan() {
    TreeBuilder disk("/data");
    disk.file(disk.folder(0, "albums"), "may.jpg", 900 * megabyte);
    const auto films = disk.folder(0, "films");
    disk.file(disk.folder(films, "alps"), "ridge.mov", 400 * megabyte);
    disk.file(films, "beach.mov", 200 * megabyte);
    return disk.build();
}

/// A folder with more files than are sorted at once.
FileTree manyFiles(int count) {
    TreeBuilder disk("/data");
    const auto logs = disk.folder(0, "logs");
    for (int i = 0; i < count; ++i)
        disk.file(logs, "log" + std::to_string(1'000'000 + i * 7919 % count),
                  megabyte + static_cast<unsigned>(i));
    disk.file(0, "zebra.txt", megabyte);
    return disk.build();
}

/// The window on the map of such a tree, with the focus in its list.
class MapListScene : public WindowScene {
public:
    explicit MapListScene(FileTree tree = foldersInFolders(), int width = 1440, int height = 900) {
        environment.scan = [tree = std::move(tree)](const std::string&, const ScanCancellation&,
                                                    const ScanProgressCallback&, const Exclusions&) {
            return ScanResult{.tree = tree, .startedAt = {}, .firstProgress = {}, .duration = 1};
        };
        open(width, height);
        app().scan()->startScan("/data");
        EXPECT_TRUE(waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; }));
        app().setScreenName(QStringLiteral("map"));
        settle();
        view = qobject_cast<TreemapItem*>(item(QStringLiteral("map.view")));
    }

    MapModel& map() { return *app().map(); }
    MapListModel& rows() { return *map().list()->rows(); }
    QQuickItem& list() { return *item(QStringLiteral("map.list")); }
    QString selected() { return map().selection().name; }
    void focusList() {
        list().forceActiveFocus(Qt::TabFocusReason);
        settle();
    }
    /// The first rows as they are seen: "films/ | . alps/ | . . ridge.mov".
    std::string seen(int most = 12) {
        QStringList lines;
        for (int row = 0; row < std::min(rows().rowCount(), most); ++row)
            lines << QStringLiteral(". ").repeated(rows().value(row, "level").toInt())
                         + rows().value(row, "name").toString();
        return lines.join(QStringLiteral(" | ")).toStdString();
    }
    QAccessibleInterface* spoken(const char* item) {
        return QAccessible::queryAccessibleInterface(this->item(QLatin1String(item)));
    }
    NodeIndex at(const char* path) { return *map().tree().index(path, PathCanonicalizer::shared()); }
    QPoint centreOf(const QString& name) {
        const auto& target = *item(name);
        return target.mapToScene({target.width() / 2, target.height() / 2}).toPoint();
    }
    QPoint centreOf(NodeIndex node) { return view->mapToScene(view->boxOf(node).center()).toPoint(); }
    /// Milliseconds since the wheel was turned last.
    void turnWheel(QPoint where, int delta, unsigned after = 1000,
                   Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                   Qt::ScrollPhase phase = Qt::NoScrollPhase) {
        time_ += after;
        QWheelEvent wheel(where, window().mapToGlobal(where), {}, {0, delta}, Qt::NoButton, modifiers, phase,
                          false);
        wheel.setTimestamp(time_);
        QCoreApplication::sendEvent(&window(), &wheel);
        waitUntil([this] { return !view->isHeld(); });
        settle();
    }

    TreemapItem* view = nullptr;

private:
    quint64 time_ = 10'000;
};

} // namespace

TEST(WindowMapList, FoldersOpenInPlaceByKeyAndByClick) {
    MapListScene scene;
    EXPECT_EQ(scene.seen(), "films/ | archive.zip | cache/");
    scene.focusList();
    scene.press(Qt::Key_Right);
    EXPECT_EQ(scene.seen(), "films/ | . alps/ | . zoo.mov | . beach.mov | archive.zip | cache/");
    EXPECT_EQ(scene.selected(), QStringLiteral("films")) << "it only opens";
    scene.press(Qt::Key_Right);
    EXPECT_EQ(scene.selected(), QStringLiteral("alps"));
    scene.click(QStringLiteral("map.fold.alps/"));
    EXPECT_EQ(scene.seen(4), "films/ | . alps/ | . . ridge.mov | . zoo.mov");
    EXPECT_EQ(scene.selected(), QStringLiteral("alps")) << "a click that opens does not select";
    scene.press(Qt::Key_Down);
    EXPECT_EQ(scene.selected(), QStringLiteral("ridge.mov"));
    EXPECT_EQ(scene.view->selectedBox(), scene.view->boxOf(scene.at("/data/films/alps/ridge.mov")));
    EXPECT_TRUE(scene.spoken("map.list.row.2")->text(QAccessible::Name).endsWith(QStringLiteral("level 3")));
    EXPECT_TRUE(scene.spoken("map.list.row.1")->state().expanded);

    scene.press(Qt::Key_Space);
    EXPECT_TRUE(scene.waitUntil([&] { return scene.rows().value(2, "refusal").toString() != QString(); }))
        << "a tick is asked for";
    EXPECT_TRUE(scene.app().notice()->text().startsWith(QStringLiteral("“ridge.mov” cannot be ticked: ")));
    scene.press(Qt::Key_Left);
    EXPECT_EQ(scene.selected(), QStringLiteral("alps"));
    scene.press(Qt::Key_Left);
    EXPECT_TRUE(scene.spoken("map.list.row.1")->state().collapsed);
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Down);
    const auto fold = scene.centreOf(QStringLiteral("map.fold.films/"));
    QTest::mouseClick(&scene.window(), Qt::LeftButton, Qt::NoModifier, fold);
    scene.settle();
    EXPECT_EQ(scene.seen(), "films/ | archive.zip | cache/");
    EXPECT_EQ(scene.selected(), QStringLiteral("films")) << "what was selected is out of sight";
    QTest::mouseDClick(&scene.window(), Qt::LeftButton, Qt::NoModifier, fold);
    scene.settle();
    EXPECT_EQ(scene.map().focus(), 0U) << "two clicks on the chevron do not zoom";
    EXPECT_EQ(scene.seen(3), "films/ | archive.zip | cache/");

    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.waitUntil([&] { return scene.map().focusName() == QStringLiteral("films"); }));
    EXPECT_EQ(scene.seen(), "alps/ | . ridge.mov | zoo.mov | beach.mov") << "what was open in it still is";
}

TEST(WindowMapList, KeepsInStepWithTheMapWhereTheMapShowsLess) {
    MapListScene scene;
    scene.focusList();
    scene.press(Qt::Key_End);
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Right);
    EXPECT_EQ(scene.selected(), QStringLiteral("object"));
    EXPECT_TRUE(scene.view->selectedBox().isEmpty()) << "too small to be drawn";
    EXPECT_EQ(scene.view->holdingBox(), scene.view->boxOf(scene.at("/data/cache")));
    EXPECT_FALSE(scene.view->holdingBox().isEmpty());
    EXPECT_TRUE(scene.isShown(QStringLiteral("map.holding")));
    scene.press(Qt::Key_Home);
    EXPECT_TRUE(scene.view->holdingBox().isEmpty());

    // The other way round: a row that holds what the map has selected can still be selected itself.
    QTest::mouseClick(&scene.window(), Qt::LeftButton, Qt::NoModifier,
                      scene.centreOf(scene.at("/data/films/zoo.mov")));
    scene.settle();
    EXPECT_EQ(scene.selected(), QStringLiteral("zoo.mov"));
    EXPECT_EQ(scene.list().property("currentIndex").toInt(), 0);
    scene.click(QStringLiteral("map.list.row.0"));
    EXPECT_EQ(scene.selected(), QStringLiteral("films"));
}

TEST(WindowMapList, AHeadSortsEveryLevel) {
    MapListScene scene;
    scene.map().list()->setOpen(0, true);
    scene.settle();
    scene.click(QStringLiteral("map.list.head.0"));
    EXPECT_EQ(scene.seen(6), "archive.zip | cache/ | films/ | . alps/ | . beach.mov | . zoo.mov");
    EXPECT_TRUE(scene.says(QStringLiteral("Name ↑")));
    scene.click(QStringLiteral("map.list.head.0"));
    EXPECT_EQ(scene.seen(6), "films/ | . zoo.mov | . beach.mov | . alps/ | cache/ | archive.zip");
    EXPECT_TRUE(scene.says(QStringLiteral("Name ↓")));
    scene.click(QStringLiteral("map.list.head.1"));
    EXPECT_EQ(scene.seen(6), "films/ | . alps/ | . zoo.mov | . beach.mov | archive.zip | cache/");
    scene.click(QStringLiteral("map.list.head.1"));
    EXPECT_EQ(scene.seen(6), "cache/ | archive.zip | films/ | . beach.mov | . zoo.mov | . alps/");
    scene.click(QStringLiteral("map.list.columns"));
    scene.click(QStringLiteral("map.list.head.3"));
    EXPECT_EQ(scene.seen(6), "cache/ | films/ | . alps/ | . zoo.mov | . beach.mov | archive.zip");
    EXPECT_TRUE(scene.says(QStringLiteral("600"))) << "what is in it";

    // What is opened later has the order too, and the selection keeps its row.
    scene.focusList();
    scene.press(Qt::Key_Home);
    scene.click(QStringLiteral("map.list.head.0"));
    EXPECT_EQ(scene.selected(), QStringLiteral("cache"));
    EXPECT_EQ(scene.list().property("currentIndex").toInt(), 1);
    scene.focusList();
    scene.press(Qt::Key_Right);
    EXPECT_EQ(scene.seen(4), "archive.zip | cache/ | . part100/ | . part101/");
}

TEST(WindowMapList, ShowsTheColumnsThatHaveRoomAndKeepsItsWidth) {
    MapListScene scene;
    const auto width = [&] { return scene.list().width(); };
    const auto shownHeads = [&] {
        std::string shown;
        for (const auto* column : {"0", "1", "2", "3", "4"})
            shown += scene.isShown(QStringLiteral("map.list.head.") + QLatin1String(column)) ? column : "";
        return shown;
    };
    EXPECT_EQ(width(), 344);
    EXPECT_EQ(shownHeads(), "01");
    scene.click(QStringLiteral("map.list.columns"));
    EXPECT_EQ(shownHeads(), "01234");
    const double wide = width();
    // The edge is dragged towards the end of the window, and the columns go one after the other.
    const auto drag = [&](int by) {
        const auto edge = scene.centreOf(QStringLiteral("map.list.edge"));
        QTest::mousePress(&scene.window(), Qt::LeftButton, Qt::NoModifier, edge);
        for (const int part : {by / 3, by * 2 / 3, by})
            QTest::mouseMove(&scene.window(), edge + QPoint(part, 0));
        QTest::mouseRelease(&scene.window(), Qt::LeftButton, Qt::NoModifier, edge + QPoint(by, 0));
        scene.settle();
    };
    drag(100);
    EXPECT_EQ(width(), wide - 100);
    EXPECT_EQ(shownHeads(), "0123");
    drag(110);
    EXPECT_EQ(shownHeads(), "012");
    EXPECT_EQ(scene.environment.settings->value(QStringLiteral("map/listWidth")).toInt(), int(wide - 210));
    drag(2000);
    EXPECT_EQ(width(), 220);
    drag(-2000);
    EXPECT_GT(width(), 900);
    EXPECT_GE(scene.view->width(), 200) << "the map keeps some room";
    QTest::mouseDClick(&scene.window(), Qt::LeftButton, Qt::NoModifier,
                       scene.centreOf(QStringLiteral("map.list.edge")));
    scene.settle();
    EXPECT_EQ(width(), 344);
    EXPECT_FALSE(scene.environment.settings->contains(QStringLiteral("map/listWidth")));
}

TEST(WindowMapList, OverTheMapItLetsNothingThrough) {
    MapListScene scene(manyFiles(50), 800, 560);
    scene.click(QStringLiteral("map.showList"));
    EXPECT_EQ(scene.list().width(), 300);
    scene.click(QStringLiteral("map.summary"));
    EXPECT_FALSE(scene.map().selection().valid);
    for (const auto* place : {"map.summary", "map.list"}) {
        scene.turnWheel(scene.centreOf(QLatin1String(place)), 120);
        EXPECT_EQ(scene.map().focus(), 0U) << place;
    }
}

TEST(WindowMapList, WhatIsOpenStaysOpenInTheNextTree) {
    MapListScene scene;
    scene.focusList();
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Right);
    scene.press(Qt::Key_Right);
    scene.map().setTree(std::make_shared<FileTree>(foldersAfterARescan()), std::nullopt);
    scene.settle();
    EXPECT_EQ(scene.seen(), "albums/ | films/ | . alps/ | . . ridge.mov | . beach.mov");
    EXPECT_EQ(scene.selected(), QStringLiteral("alps"));
    EXPECT_EQ(scene.list().property("currentIndex").toInt(), 2);
    auto without = std::make_shared<FileTree>(scene.map().tree());
    without->remove(std::array{scene.at("/data/films/alps")});
    scene.map().setTree(without, std::nullopt);
    EXPECT_EQ(scene.seen(), "albums/ | films/ | . beach.mov");
    scene.map().setTree(std::make_shared<FileTree>(), std::nullopt);
    scene.map().setTree(std::make_shared<FileTree>(foldersInFolders()), std::nullopt);
    EXPECT_EQ(scene.seen(5), "films/ | . alps/ | . zoo.mov | . beach.mov | archive.zip") << "measured again";
}

TEST(WindowMapList, AnEditedTreeLeavesItWhereItWasScrolled) {
    MapListScene scene;
    scene.map().list()->setOpen(2, true);
    scene.settle();
    scene.click(QStringLiteral("map.list.row.1"));
    auto& view = *qvariant_cast<QQuickItem*>(scene.list().property("contentItem"));
    view.setProperty("contentY", 4000);
    scene.settle();
    auto without = std::make_shared<FileTree>(scene.map().tree());
    without->remove(std::array{scene.at("/data/cache/part399")});
    scene.map().setTree(without, std::nullopt);
    scene.settle();
    EXPECT_EQ(view.property("contentY").toDouble(), 4000);
    scene.click(QStringLiteral("map.list.head.0"));
    EXPECT_LT(view.property("contentY").toDouble(), 100) << "the selection is in sight in every order";
    scene.click(QStringLiteral("map.list.head.1"));
    scene.map().show(scene.at("/data/cache"));
    scene.settle();
    EXPECT_EQ(view.property("contentY").toDouble(), 0) << "another folder is seen from its top";
}

TEST(WindowMapList, AFolderOfManyFilesOpensInOneStep) {
    constexpr int count = 20'000;
    MapListScene scene(manyFiles(count));
    scene.click(QStringLiteral("map.list.head.0"));
    const QSignalSpy inserted(&scene.rows(), &QAbstractItemModel::rowsInserted);
    scene.focusList();
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Right);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.rows().rowCount() == count + 2; }));
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(scene.seen(3), "logs/ | . log1000000 | . log1000001");
    for (const char letter : std::string("log1012345"))
        QTest::keyClick(&scene.window(), letter);
    EXPECT_EQ(scene.selected(), QStringLiteral("log1012345"));
    scene.press(Qt::Key_End);
    EXPECT_EQ(scene.selected(), QStringLiteral("zebra.txt"));

    // Keys act on the row that has the focus, also where the wheel has taken it out of sight.
    scene.press(Qt::Key_Home);
    qvariant_cast<QQuickItem*>(scene.list().property("contentItem"))->setProperty("contentY", 200'000);
    scene.settle();
    scene.press(Qt::Key_Left);
    EXPECT_EQ(scene.rows().rowCount(), 2);
    scene.press(Qt::Key_Right);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.rows().rowCount() == count + 2; }));
    scene.click(QStringLiteral("map.list.head.0"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.seen(1) == "zebra.txt"; }));
    EXPECT_EQ(scene.seen(3), "zebra.txt | logs/ | . log1019999");
}

TEST(WindowMapList, TheInspectorSaysWhatIsInAFolder) {
    MapListScene scene;
    scene.focusList();
    scene.press(Qt::Key_End);
    EXPECT_TRUE(scene.says(QStringLiteral("600 items in 300 folders")));
    scene.press(Qt::Key_Home);
    EXPECT_TRUE(scene.says(QStringLiteral("4 items in 1 folder")));
    scene.press(Qt::Key_Down);
    EXPECT_FALSE(scene.isShown(QStringLiteral("map.contents"))) << "a file";
}

TEST(WindowMapWheel, ZoomsALevelANotchAndTheMiddleButtonGoesUp) {
    MapListScene scene;
    const auto shown = [&] { return scene.map().focusName().toStdString(); };
    const auto whole = shown();
    const auto ridge = scene.centreOf(scene.at("/data/films/alps/ridge.mov"));
    scene.turnWheel(ridge, 120);
    EXPECT_EQ(shown(), "films") << "the outermost folder under the pointer";
    scene.turnWheel(scene.centreOf(scene.at("/data/films/alps/ridge.mov")), 120, 1000, Qt::ControlModifier);
    EXPECT_EQ(shown(), "alps");
    scene.turnWheel(ridge, 120);
    EXPECT_EQ(shown(), "alps") << "a file is no folder";
    scene.turnWheel(ridge, -120);
    EXPECT_EQ(shown(), "films");
    EXPECT_EQ(scene.selected(), QStringLiteral("alps")) << "where one came from";
    scene.turnWheel(ridge, -120, 50);
    EXPECT_EQ(shown(), "films") << "a flick is one level at a time";
    scene.turnWheel(ridge, -120, 1000, Qt::NoModifier, Qt::ScrollMomentum);
    EXPECT_EQ(shown(), "films") << "nor what a touchpad sends after the fingers";
    for (const int part : {-50, -50, 30, -50, -50})
        scene.turnWheel(ridge, part, 10);
    EXPECT_EQ(shown(), "films") << "parts of a notch, and back";
    scene.turnWheel(ridge, -20, 10);
    EXPECT_EQ(shown(), whole);
    scene.turnWheel(ridge, -120);
    EXPECT_EQ(shown(), whole);

    scene.map().show(scene.at("/data/films/alps"));
    scene.settle();
    QTest::mouseClick(&scene.window(), Qt::MiddleButton, Qt::NoModifier, ridge);
    scene.settle();
    EXPECT_EQ(shown(), "films");
    QTest::mouseDClick(&scene.window(), Qt::MiddleButton, Qt::NoModifier, ridge);
    scene.settle();
    EXPECT_EQ(shown(), whole);
}

TEST(WindowMapList, Pictures) {
    struct Size {
        int width;
        int height;
    };
    for (const auto [width, height] : {Size{1440, 900}, Size{1100, 760}, Size{800, 560}, Size{2560, 1440}}) {
        MapListScene scene(foldersInFolders(), width, height);
        if (width == 800)
            scene.click(QStringLiteral("map.showList"));
        scene.focusList();
        for (int i = 0; i < 4; ++i)
            scene.press(Qt::Key_Right);
        const auto name = QStringLiteral("map-tree-%1x%2").arg(width).arg(height);
        keepPicture(scene, name);
        scene.click(QStringLiteral("map.list.columns"));
        keepPicture(scene, name + QStringLiteral("-wide"));
    }
}

} // namespace orbel::test
