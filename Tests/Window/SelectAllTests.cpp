#include "AppModel/LargeOldFlow.h"
#include "AppModel/MapModel.h"
#include "AppModel/TickAll.h"
#include "ModelScene.h"
#include "RealHome.h"
#include "WindowScene.h"

#include <gtest/gtest.h>

namespace orbel::test {

namespace {

TickedItem itemAt(const std::string& path, bool isRefused = false) {
    auto item = DeletionItem::unasked(path, DeletionModule::map, AllowedRoot::homeItem, {}, 10);
    if (isRefused)
        item.blockedReason = "is protected";
    return TickedItem::alone(std::move(item), ContentKind::other);
}

} // namespace

TEST(SelectAll, ComesBesideWhatWasTickedMeanwhileAndNotAfterAllWasCleared) {
    Ticks ticks;
    TickAll all(ticks);
    const auto list = [](const LatestJob::Run&) {
        return std::vector{itemAt("/a/1"), itemAt("/a/2", true), itemAt("/a/b"), itemAt("/a/b/inside")};
    };
    ticks.setTicked(itemAt("/a/1"), true);
    bool isDone = false;
    all.run(list, [&] { isDone = true; });
    ticks.setTicked(itemAt("/elsewhere"), true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    std::vector<std::string> paths;
    for (const auto& [path, item] : ticks.byPath())
        paths.push_back(path);
    EXPECT_EQ(paths, (std::vector<std::string>{"/a/1", "/a/b", "/elsewhere"}));

    isDone = false;
    all.run(list, [&] { isDone = true; });
    ticks.clear();
    EXPECT_FALSE(QTest::qWaitFor([&] { return isDone || ticks.count() > 0; }, 300));
}

TEST(SelectAllOnTheMap, TicksWhatLiesInTheFolderThatIsShown) {
    TemporaryFolder home;
    ModelScene scene;
    useRealHome(scene.environment, home.path());
    scene.environment.dataVolumePath = home.path();
    for (const auto* name : {"Films/a.mkv", "Films/b.mkv", "Films/older/c.mkv", "Films/.git/HEAD",
                             "Films/mixed/keys.kdbx", "Films/mixed/d.mkv", "notes.pdf"})
        home.file(name, std::size_t{20'000});
    scene.model().scan()->startScan(home.path());
    scene.waitUntil([&] { return scene.model().scan()->hasTree(); });
    auto& map = *scene.model().map();
    map.show(*map.tree().index(home.path("Films"), PathCanonicalizer::shared()));
    const auto open = [&](const char* folder) {
        auto& list = *map.list();
        const auto node = map.tree().index(home.path(folder), PathCanonicalizer::shared());
        list.setOpen(list.rows()->rowOf(*node), true);
    };
    open("Films/older");
    open("Films/mixed");
    map.ticking()->tickAll();
    scene.waitUntil([&] { return map.ticking()->ticks()->count() >= 5; });
    std::set<std::string> paths;
    for (const auto& [path, item] : map.ticking()->ticks()->byPath())
        paths.insert(path);
    EXPECT_EQ(paths, (std::set{home.path("Films/.git"), home.path("Films/a.mkv"), home.path("Films/b.mkv"),
                               home.path("Films/older"), home.path("Films/mixed/d.mkv")}));
    EXPECT_EQ(map.ticking()->ticks()->covering(home.path("notes.pdf")), nullptr);
}

TEST(SelectAllInTheWindow, TicksWhatIsShownAndMayMove) {
    WindowScene scene;
    scene.open();
    scene.press(Qt::Key_F5);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->hasTree(); }));
    auto& large = *scene.app().largeOld();
    scene.app().setScreen(Screen::large);
    ASSERT_TRUE(scene.waitUntil([&] { return large.isKnown() && large.rows()->rowCount() > 0; }));
    const auto mayMove = [&] {
        int count = 0;
        for (int row = 0; row < large.rows()->rowCount(); ++row)
            count += large.rows()->value(row, "refusal").toString().isEmpty() ? 1 : 0;
        return count;
    };
    const int ofAll = mayMove();
    ASSERT_LT(ofAll, large.rows()->rowCount()) << "the sample has a refused one";
    large.setText(QStringLiteral("Videos"));
    ASSERT_TRUE(scene.waitUntil([&] { return mayMove() < ofAll; }));
    const int ofShown = mayMove();
    ASSERT_GT(ofShown, 0);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("large.table")));
    scene.press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(scene.waitUntil([&] { return large.ticks()->count() == ofShown; }));
    large.setText({});
    scene.settle();
    scene.press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(scene.waitUntil([&] { return large.ticks()->count() == ofAll; }));
    scene.press(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(large.ticks()->count(), 0);
}

} // namespace orbel::test
