#include "AppModel/FindModel.h"
#include "AppModel/LargeOldFlow.h"
#include "ModelScene.h"
#include "Support/TreeBuilder.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

namespace orbel::test {

namespace {

void type(WindowScene& scene, const char* letters) {
    for (const char* letter = letters; *letter != '\0'; ++letter)
        QTest::keyClick(&scene.window(), *letter);
}

/// The window with the sample disk measured.
void measure(WindowScene& scene) {
    scene.open();
    scene.app().scan()->scanDisk();
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().largeOld()->isKnown(); }));
    scene.settle();
}

} // namespace

TEST(Find, FollowsTheTextAndTheTree) {
    ModelScene scene;
    FindModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    model.setScan(scene.model().scan());
    model.setText(QStringLiteral("mkv"));
    EXPECT_FALSE(model.isSearching()) << "nothing is measured";
    scene.scanWith("/data", sampleScan());
    scene.waitUntil([&] { return model.rowCount() == 2; });
    EXPECT_EQ(model.value(0, "name").toString(), QStringLiteral("a.mkv"));
    EXPECT_EQ(model.value(0, "folder").toString(), QStringLiteral("/data/films"));
    EXPECT_EQ(model.summary(), QStringLiteral("2 found"));

    // The rows are those of the last letters, however many came at once.
    for (const auto* text : {"f", "fi", "fil", "films", "FILMS "})
        model.setText(QLatin1String(text));
    scene.waitUntil([&] { return !model.isSearching(); });
    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.value(0, "name").toString(), QStringLiteral("films/"));
    model.setText(QStringLiteral("nowhere"));
    scene.waitUntil([&] { return model.summary() == QLatin1String("Nothing of this name"); });

    model.setText(QStringLiteral("notes"));
    scene.waitUntil([&] { return model.rowCount() == 1; });
    scene.model().scan()->startScan("/data");
    EXPECT_EQ(model.rowCount(), 0) << "of a tree that is gone";
}

TEST(WindowFind, LeadsFromANameToItsPlaceOnTheMap) {
    WindowScene scene;
    measure(scene);
    scene.press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("overview.find.field")));
    type(scene, "mov");
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("2 found")); }));
    scene.settle();
    for (const auto& appearance : {QStringLiteral("dark"), QStringLiteral("light")}) {
        scene.setAppearance(appearance);
        scene.picture().save(QStringLiteral(ORBEL_SNAPSHOTS "/find-") + appearance + QStringLiteral(".png"));
    }
    scene.press(Qt::Key_Down);
    scene.press(Qt::Key_Return);
    ASSERT_EQ(scene.app().screen(), Screen::map);
    const auto* const map = qobject_cast<TreemapItem*>(scene.item(QStringLiteral("map.view")))->map();
    EXPECT_EQ(map->focusName(), QStringLiteral("Videos"));
    EXPECT_EQ(map->selection().name, QStringLiteral("harbour_master.mov"));

    scene.click(QStringLiteral("map.find"));
    type(scene, "raw");
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("map.find.row.0")); }));
    scene.press(Qt::Key_Escape);
    EXPECT_FALSE(scene.isShown(QStringLiteral("map.find.field")));
    EXPECT_EQ(map->focusName(), QStringLiteral("Videos"));

    scene.press(Qt::Key_F, Qt::ControlModifier);
    type(scene, "resolve");
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("1 found")); }));
    scene.settle();
    scene.click(QStringLiteral("map.find.row.0"));
    EXPECT_EQ(map->selection().name, QStringLiteral("DaVinci.app")) << "which holds what was found";

    scene.press(Qt::Key_F, Qt::ControlModifier);
    for (const char letter : std::string_view("harbour"))
        QTest::keyClick(&scene.window(), letter);
    QTest::keyClick(&scene.window(), Qt::Key_Return);
    EXPECT_TRUE(scene.waitUntil([&] { return map->selection().name == QLatin1String("harbour_master.mov"); }))
        << "typed ahead of the answer";
}

TEST(WindowFind, TheOverviewCountsAndLeadsToAKind) {
    WindowScene scene;
    measure(scene);
    const auto files = scene.app().largeOld()->countText();
    EXPECT_EQ(scene.item(QStringLiteral("sidebar.large"))->property("count").toString(), files);
    EXPECT_EQ(scene.item(QStringLiteral("sidebar.map"))->property("count").toString(), QString());
    EXPECT_TRUE(scene.says(scene.app().largeOld()->summary()));
    scene.item(QStringLiteral("overview.kinds"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Home);
    scene.press(Qt::Key_Return);
    ASSERT_EQ(scene.app().screen(), Screen::map);
    EXPECT_EQ(scene.item(QStringLiteral("map.filter"))->property("text").toString(), QStringLiteral("Video"));
}

} // namespace orbel::test
