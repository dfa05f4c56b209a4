#include "AppModel/TreeEdits.h"
#include "Models/ChangeTable.h"
#include "SampleDisk.h"
#include "Support/OklabDistance.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <set>

namespace orbel::test {
namespace {

/// A measured disk, of which there is a scan of last week and one of last month.
struct ChangesWindow : WindowScene {
    ChangesWindow() {
        keepScan(SampleDisk::partlyMeasured(), 30);
        keepScan(SampleDisk::lastWeek(), 7);
        open();
        app().scan()->scanDisk();
        EXPECT_TRUE(waitUntil([this] { return app().compare()->scan() == 0; }));
        settle();
    }
    void showChanges() {
        click(QStringLiteral("overview.changes"));
        rest();
    }
    void rest() {
        EXPECT_TRUE(
            waitUntil([this] { return app().changes()->isKnown() && !app().changes()->isRunning(); }));
        settle();
    }
    std::string textOf(const char* name) {
        return item(QLatin1String(name))->property("text").toString().toStdString();
    }
};

TEST(WindowChangesPage, IsReachedAndLeftByMouseAndKeys) {
    ChangesWindow scene;
    scene.showChanges();
    EXPECT_TRUE(scene.isShown(QStringLiteral("changes")));
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("changes.table")));
    EXPECT_TRUE(scene.isShown(QStringLiteral("changes.row.harbour_master.mov")));
    EXPECT_TRUE(scene.says(QStringLiteral("Moved from ~/dataset-lidar-tampere.zip")));
    EXPECT_EQ(scene.textOf("changes.net"), "+33.5 GB in all");
    scene.click(QStringLiteral("changes.back"));
    EXPECT_TRUE(scene.isShown(QStringLiteral("overview")));
    EXPECT_FALSE(scene.app().compare()->compared()) << "both scans are let go with the page";
    scene.item(QStringLiteral("overview.changes"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Return);
    scene.rest();
    EXPECT_TRUE(scene.isShown(QStringLiteral("changes")));
    scene.press(Qt::Key_Escape);
    EXPECT_TRUE(scene.isShown(QStringLiteral("overview")));
}

TEST(WindowChangesPage, TheMenuChoosesTheScanThatIsComparedWith) {
    ChangesWindow scene;
    scene.click(QStringLiteral("overview.since"));
    EXPECT_TRUE(scene.item(QStringLiteral("overview.since.0"))->property("checked").toBool());
    scene.click(QStringLiteral("overview.since.1"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().compare()->scan() == 1; }));
    scene.showChanges();
    EXPECT_FALSE(scene.says(QStringLiteral("Moved from"))) << "a month ago it lay where it does now";
    scene.click(QStringLiteral("changes.since"));
    scene.click(QStringLiteral("changes.since.0"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Moved from")); }));
}

TEST(WindowChangesPage, FiltersSortsAndLeadsToTheMap) {
    ChangesWindow scene;
    scene.showChanges();
    scene.click(QStringLiteral("changes.kind"));
    scene.click(QStringLiteral("changes.kind.4"));
    scene.rest();
    EXPECT_EQ(scene.app().changes()->rows()->rowCount(), 1);
    EXPECT_TRUE(scene.textOf("changes.count").starts_with("1 of ")) << scene.textOf("changes.count");
    scene.press(Qt::Key_F, Qt::ControlModifier);
    scene.press(Qt::Key_Q);
    scene.press(Qt::Key_Q);
    scene.rest();
    scene.click(QStringLiteral("changes.empty.action"));
    scene.rest();
    EXPECT_EQ(scene.app().changes()->text(), QString());
    EXPECT_EQ(scene.app().changes()->kind(), 0);
    scene.click(QStringLiteral("changes.head.%1").arg(ChangesFlow::Name));
    scene.rest();
    EXPECT_EQ(scene.app().changes()->rows()->value(0, "name"), QStringLiteral("/"));

    // By its first letters; what is gone is shown by the folder that held it.
    scene.item(QStringLiteral("changes.table"))->forceActiveFocus(Qt::TabFocusReason);
    for (const int key : {Qt::Key_B, Qt::Key_A, Qt::Key_C})
        scene.press(key);
    EXPECT_TRUE(
        scene.item(QStringLiteral("changes.row.backup-of-the-old-laptop.tar"))->property("focused").toBool());
    scene.press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_FALSE(scene.isShown(QStringLiteral("changes.menu.open"))) << "it is not there any more";
    scene.click(QStringLiteral("changes.menu.zoom"));
    const auto shown = [&] { return scene.app().map()->facts(scene.app().map()->focus()).path; };
    EXPECT_EQ(scene.app().screenName(), QStringLiteral("map"));
    EXPECT_EQ(shown(), QStringLiteral("~/Downloads"));
    EXPECT_FALSE(scene.app().map()->selectedNode());

    scene.press(Qt::Key_1, Qt::ControlModifier);
    scene.showChanges();
    scene.click(QStringLiteral("changes.row.harbour_master.mov"));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(shown(), QStringLiteral("~/Videos"));
    EXPECT_EQ(scene.app().map()->selection().name, QStringLiteral("harbour_master.mov"));
}

TEST(WindowChangesMap, IsColouredByChangeWhenWanted) {
    ChangesWindow scene;
    auto& map = *scene.app().map();
    scene.press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(map.nodeChanges(), nullptr) << "by kind, as long as nothing else is wanted";
    const auto byKind = scene.picture();
    scene.click(QStringLiteral("map.colours"));
    scene.click(QStringLiteral("map.colours.1"));
    ASSERT_TRUE(scene.waitUntil([&] { return map.nodeChanges() != nullptr; }));
    scene.settle();
    EXPECT_NE(scene.picture(), byKind);
    EXPECT_TRUE(scene.isShown(QStringLiteral("map.change.2"))) << "what is new has an entry in the legend";
    EXPECT_FALSE(scene.isShown(QStringLiteral("map.kind.1")));

    const auto node = [&](const char* path) { return *map.tree().index(path, PathCanonicalizer::shared()); };
    const auto ridge = node("/home/mira/Videos/KJ_A014_ridge.mov");
    EXPECT_EQ(map.changeText(ridge), QStringLiteral("Grew by 14.6 GB"));
    EXPECT_EQ(map.changeText(node("/home/mira/Videos/harbour_master.mov")), QStringLiteral("New"));
    EXPECT_EQ(map.changeText(node("/home/mira/Downloads/dataset-lidar-tampere.zip")),
              QStringLiteral("Moved from ~/dataset-lidar-tampere.zip"));
    map.jumpTo(ridge);
    scene.settle();
    EXPECT_EQ(scene.item(QStringLiteral("map.change"))->property("value"), QStringLiteral("Grew by 14.6 GB"));
    scene.item(QStringLiteral("map.view"))->forceActiveFocus(Qt::TabFocusReason);
    const auto& treemap = *qobject_cast<TreemapItem*>(scene.item(QStringLiteral("map.view")));
    EXPECT_TRUE(treemap.tileName(treemap.selectedTile()).endsWith(QStringLiteral("Grew by 14.6 GB")));
    EXPECT_TRUE(treemap.status().contains(QStringLiteral("Grew by 14.6 GB")))
        << treemap.status().toStdString();

    scene.click(QStringLiteral("map.change.2"));
    EXPECT_EQ(map.filterText(), QStringLiteral("New"));
    const auto filtered = scene.picture();
    scene.click(QStringLiteral("map.filter"));
    EXPECT_NE(scene.picture(), filtered) << "all is drawn in full again";

    // It follows an edit of the tree, whose nodes have other numbers.
    scene.app().treeEdits().remove({"/home/mira/Videos/harbour_master.mov"});
    ASSERT_TRUE(scene.waitUntil([&] {
        return map.nodeChanges() != nullptr
               && !map.tree().index("/home/mira/Videos/harbour_master.mov", PathCanonicalizer::shared());
    }));
    EXPECT_EQ(map.changeText(node("/home/mira/Videos")), QStringLiteral("Grew by 14.6 GB"));
    scene.click(QStringLiteral("map.colours"));
    scene.click(QStringLiteral("map.colours.0"));
    EXPECT_EQ(map.nodeChanges(), nullptr);
    EXPECT_FALSE(scene.app().compare()->compared());
    EXPECT_TRUE(scene.isShown(QStringLiteral("map.kind.1")));
}

TEST(WindowChangesMap, ColoursStayApartForTheColourBlind) {
    for (const bool isDark : {false, true}) {
        std::vector<Rgb> fills;
        std::set<std::string_view> glyphs;
        for (const ChangeRow& row : changeTable) {
            EXPECT_EQ(&rowOf(row.change), &row);
            EXPECT_TRUE(glyphs.insert(row.glyph).second);
            // What has gone is not on the map.
            if (row.change != NodeChange::went)
                fills.push_back((isDark ? row.dark : row.light).fill);
        }
        EXPECT_GE(smallestDistance(fills), 0.14);
    }
}

} // namespace
} // namespace orbel::test
