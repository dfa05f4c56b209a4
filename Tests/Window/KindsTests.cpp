#include "Snapshots.h"
#include "Support/TreeBuilder.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

constexpr std::uint64_t kindsUnit = 1'000'000'000;

/// A home with something of every kind, most of it of none.
FileTree treeOfAllKinds() {
    TreeBuilder disk("/");
    const auto home = disk.folder(disk.folder(0, "home"), "mira");
    const auto add = [&](const char* folder, std::initializer_list<std::pair<const char*, double>> files) {
        const auto node = disk.folder(home, folder);
        for (const auto& [name, size] : files)
            disk.file(node, name, static_cast<std::uint64_t>(size * kindsUnit));
    };
    add("Videos", {{"ridge.mov", 41}, {"lake.mp4", 22}});
    add("Pictures", {{"IMG_2041.dng", 18}, {"poster.psd", 9}, {"wallpaper.png", 3}});
    add("Music", {{"concert.flac", 14}, {"radio.mp3", 6}});
    add("Machines", {{"win11.qcow2", 30}});
    add("Downloads", {{"raspios.img", 16}, {"lidar.zip", 12}, {"studio.AppImage", 8}, {"game.exe", 11}});
    add("Projects", {{"amalgamation.c", 5}, {"dump.json", 4}, {"libengine.so.4.2", 13}, {"engine.o", 7}});
    add("Documents", {{"scans.pdf", 10}});
    add("Data", {{"points.parquet", 15}, {"mail.sqlite", 6}});
    add("Logs", {{"server.log", 4}, {"server.log.1", 8}});
    add("Games", {{"world.pak", 55}, {"textures.bin", 25}, {"intro.mkv", 1}});
    return disk.build();
}

class KindsScene : public WindowScene {
public:
    explicit KindsScene(int width = 1440, int height = 900) {
        environment.scan = [](const std::string&, const ScanCancellation&, const ScanProgressCallback&,
                              const Exclusions&) {
            return ScanResult{.tree = treeOfAllKinds(), .startedAt = {}, .firstProgress = {}, .duration = 1};
        };
        open(width, height);
        app().scan()->scanDisk();
        EXPECT_TRUE(waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; }));
        settle();
    }

    void show(const char* screen) {
        app().setScreenName(QLatin1String(screen));
        settle();
    }
    const MapModel& map() { return *qobject_cast<TreemapItem*>(item(QStringLiteral("map.view")))->map(); }
    /// The entries of the legend, shown or not, from left to right.
    std::vector<QQuickItem*> legend() {
        std::vector<QQuickItem*> entries;
        for (auto* const entry : item(QStringLiteral("map.kind.7"))->parentItem()->childItems())
            if (entry->objectName().startsWith(QStringLiteral("map.kind.")))
                entries.push_back(entry);
        std::ranges::sort(entries, {}, [](auto* entry) { return entry->x(); });
        return entries;
    }
    /// Of an entry: what can be seen of it.
    static double shownShare(const QQuickItem* entry) {
        const auto* const view = entry->parentItem()->parentItem();
        const QRectF box = entry->mapRectToItem(view, QRectF(0, 0, entry->width(), entry->height()));
        const QRectF seen = box.intersected(QRectF(0, 0, view->width(), view->height()));
        return seen.width() * seen.height() / (box.width() * box.height());
    }
};

} // namespace

TEST(WindowKinds, TheLegendNeverCutsAnEntry) {
    for (const auto& [width, height] : {std::pair{1440, 900}, {1100, 700}, {1000, 700}, {800, 560}}) {
        SCOPED_TRACE(width);
        KindsScene scene(width, height);
        scene.show("map");
        const auto largest = [&] { return scene.legend().front(); };
        EXPECT_EQ(largest()->property("kind").toInt(), static_cast<int>(ContentKind::other));
        EXPECT_EQ(scene.legend().size(), allContentKinds.size() - 1) << "all but folders";
        const auto expectWhole = [&] {
            int shown = 0;
            for (const auto* entry : scene.legend()) {
                const double share = KindsScene::shownShare(entry);
                EXPECT_TRUE(share < 0.001 || share > 0.999) << entry->objectName().toStdString() << share;
                shown += share > 0.5 ? 1 : 0;
            }
            EXPECT_GE(shown, 2);
        };
        EXPECT_GT(KindsScene::shownShare(largest()), 0.999);
        expectWhole();
        // All can be reached, with the mouse and with the keyboard.
        for (int i = 0; i < 20 && scene.item(QStringLiteral("map.legend.forward"))->isEnabled(); ++i) {
            scene.click(QStringLiteral("map.legend.forward"));
            scene.settle();
            expectWhole();
        }
        EXPECT_GT(KindsScene::shownShare(scene.legend().back()), 0.999);
        largest()->forceActiveFocus(Qt::TabFocusReason);
        scene.settle();
        EXPECT_GT(KindsScene::shownShare(largest()), 0.999);
        expectWhole();
        keepPicture(scene, QStringLiteral("kinds-map-%1").arg(width));
    }
}

TEST(WindowKinds, TheOverviewLeadsToAnExtension) {
    KindsScene scene;
    keepPicture(scene, QStringLiteral("kinds-overview"));
    scene.click(QStringLiteral("overview.by.1"));
    scene.settle();
    EXPECT_TRUE(scene.says(QStringLiteral(".pak")));
    EXPECT_TRUE(scene.says(QStringLiteral("1 file")));
    keepPicture(scene, QStringLiteral("kinds-extensions"));
    auto* const list = scene.item(QStringLiteral("overview.kinds"));
    list->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Return);
    ASSERT_EQ(scene.app().screen(), Screen::map);
    scene.settle();
    EXPECT_EQ(scene.map().filter().extension, "pak");
    EXPECT_EQ(scene.item(QStringLiteral("map.filter"))->property("text").toString(),
              QStringLiteral(".pak files"));
    EXPECT_TRUE(
        scene.waitUntil([&] { return scene.says(QStringLiteral("filtered to .pak files, 55.0 GB")); }));
    keepPicture(scene, QStringLiteral("kinds-filtered"));

    // A kind takes the place of an extension, and the chip ends either.
    scene.click(QStringLiteral("map.kind.1"));
    EXPECT_TRUE(scene.map().filter().extension.empty());
    EXPECT_TRUE(scene.says(QStringLiteral("filtered to Video, 64.0 GB")));
    scene.click(QStringLiteral("map.filter"));
    EXPECT_FALSE(scene.map().filter().isSet());
}

TEST(WindowKinds, AJumpEndsAFilterThatWouldHideIt) {
    KindsScene scene;
    const auto& tree = *scene.app().scan()->tree();
    const auto at = [&](const char* path) { return *tree.index(path, PathCanonicalizer::shared()); };
    const auto filtered = [&] { return scene.map().filter().isSet(); };
    const auto toVideo = [&] {
        scene.show("overview");
        auto* const list = scene.item(QStringLiteral("overview.kinds"));
        list->forceActiveFocus(Qt::TabFocusReason);
        scene.press(Qt::Key_Home);
        scene.press(Qt::Key_Down);
        EXPECT_EQ(list->property("currentIndex").toInt(), 1);
        scene.press(Qt::Key_Return);
        scene.settle();
        EXPECT_TRUE(filtered());
    };
    toVideo();
    scene.show("overview");
    scene.item(QStringLiteral("overview.folders"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Return);
    ASSERT_EQ(scene.app().screen(), Screen::map);
    EXPECT_FALSE(filtered()) << "the card of the largest folders";

    toVideo();
    scene.app().showOnMap(at("/home/mira/Music/radio.mp3"));
    EXPECT_FALSE(filtered()) << "a file of another kind";
    toVideo();
    scene.app().showOnMap(at("/home/mira/Games/intro.mkv"));
    EXPECT_TRUE(filtered()) << "a file that it shows";
    EXPECT_EQ(scene.map().focusName(), QStringLiteral("Games"));
    scene.press(Qt::Key_Backspace);
    EXPECT_TRUE(filtered()) << "the map itself keeps it";
}

TEST(WindowKinds, LargeAndOldFilesAreFilteredByTheFinerKinds) {
    for (const auto& [width, height] : {std::pair{1440, 900}, {800, 560}}) {
        KindsScene scene(width, height);
        scene.show("large");
        auto& large = *scene.app().largeOld();
        large.setAge(0);
        ASSERT_TRUE(scene.waitUntil([&] { return large.isKnown() && !large.largeOldRunning(); }));
        EXPECT_FALSE(large.kinds().contains(QStringLiteral("Folders"))) << "no row is one";
        scene.click(QStringLiteral("large.kind"));
        scene.settle();
        keepPicture(scene, QStringLiteral("kinds-choice-%1").arg(width));
        const auto music = static_cast<int>(large.kinds().indexOf(QStringLiteral("Music")));
        scene.click(QStringLiteral("large.kind.%1").arg(music));
        ASSERT_TRUE(scene.waitUntil([&] { return large.countText() == QLatin1String("2"); }));
        scene.settle();
        EXPECT_TRUE(scene.says(QStringLiteral("concert.flac")));
        EXPECT_EQ(large.kind(), music);
    }
}

} // namespace orbel::test
