#include "AppModel/AppsFlow.h"
#include "AppModel/MoveFlow.h"
#include "ModelScene.h"
#include "Platform/HomeTrash.h"
#include "SampleApps.h"

#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

namespace orbel::test {

namespace {

struct AppsFlowOn : testing::Test {
    /// What the model's threads are told; they may outlive the scene.
    struct World {
        std::mutex mutex;
        std::vector<InstalledApp> apps;
        std::vector<platform::RunningProgram> running;
        platform::InstalledIds ids = SampleApps::installedIds();
        std::atomic<int> readings = 0;
        std::atomic<int> plans = 0;
        std::atomic<bool> isHeld = false; ///< the next reading or plan waits until this is false
        bool mayBeAsked = false;
    };

    AppsFlowOn() {
        scene.environment.home = sample.home.path();
        scene.environment.trashFolder = platform::homeTrash(sample.home.path());
        scene.environment.journalPath = sample.home.path("journal/journal.jsonl");
        world->apps = sample.inventory;
        const auto waitIfFirst = [](World& told, int number) {
            while (told.isHeld && number == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        };
        scene.environment.installedApps = [told = world, waitIfFirst] {
            std::vector<InstalledApp> apps;
            {
                const std::scoped_lock lock(told->mutex);
                apps = told->apps;
            }
            waitIfFirst(*told, told->readings++);
            return apps;
        };
        scene.environment.runningPrograms = [told = world, waitIfFirst] {
            waitIfFirst(*told, told->plans++);
            const std::scoped_lock lock(told->mutex);
            return told->running;
        };
        scene.environment.seenPackagesPath = sample.home.path("journal/installed.json");
        scene.environment.installedIds = [told = world] {
            const std::scoped_lock lock(told->mutex);
            return told->ids;
        };
        scene.environment.askToQuit = [told = world](const auto& /*running*/) { return told->mayBeAsked; };
    }
    ~AppsFlowOn() override { world->isHeld = false; }

    AppsFlow& flow() { return *scene.model().apps(); }
    MoveFlow& moves() { return *scene.model().moves(); }
    void read() {
        flow().open();
        scene.waitUntil([this] { return flow().isLoaded() && !flow().isBusy(); });
    }
    void select(const std::string& name) {
        flow().select(flow().list()->rowOf(sample.app(name).path));
        scene.waitUntil([this] { return !flow().isBusy(); });
    }
    int rowOf(const QString& title) {
        int row = flow().leftovers()->rowCount() - 1;
        while (row >= 0 && told(row, "title") != title)
            --row;
        return row;
    }
    QString told(int row, const char* role) { return flow().leftovers()->value(row, role).toString(); }

    SampleApps sample;
    std::shared_ptr<World> world = std::make_shared<World>();
    ModelScene scene;
};

} // namespace

TEST_F(AppsFlowOn, WhatIsLeftOutOfMeasuringStays) {
    read();
    select("Aster");
    EXPECT_EQ(flow().ticks()->count(), 1);
    const auto cache = QStringLiteral("~/.cache/org.example.Aster");
    scene.model().exclusions()->addFolder(
        QUrl::fromLocalFile(QString::fromStdString(sample.home.path(".cache"))));
    scene.waitUntil([&] { return told(rowOf(cache), "refusal") == QStringLiteral("Left out of measuring"); });
    EXPECT_EQ(flow().ticks()->count(), 0);
    flow().toggleTick(rowOf(cache));
    EXPECT_EQ(flow().ticks()->count(), 0);
    EXPECT_EQ(told(rowOf(QStringLiteral("~/.config/org.example.Aster")), "refusal"), QString());
    scene.model().exclusions()->remove(0);
    scene.waitUntil([&] { return told(rowOf(cache), "refusal").isEmpty(); });
}

TEST_F(AppsFlowOn, TellsWhatGoesWithAnAppAndTicksOnlyItsOwnCaches) {
    const QAbstractItemModelTester rows(flow().leftovers());
    read();
    EXPECT_EQ(flow().summary(), QStringLiteral("13 apps")) << "the hidden one is nobody's choice";
    select("Aster");
    ASSERT_TRUE(flow().uninstallPlan());
    EXPECT_EQ(flow().ticks()->count(), 1);
    EXPECT_EQ(flow().ticks()->items().front().item.path, sample.home.path() + "/.cache/org.example.Aster");
    EXPECT_EQ(flow().ticks()->items().front().count, 3U) << "a folder with two files";
    const int settings = rowOf(QStringLiteral("~/.config/org.example.Aster"));
    EXPECT_TRUE(told(settings, "detail").contains(QStringLiteral("whole id")));
    flow().toggleTick(settings);
    flow().toggleTick(0);
    EXPECT_EQ(flow().ticks()->statement(), QStringLiteral("3 items ticked"));
    EXPECT_EQ(flow().selected().total, QStringLiteral("528 KB"));

    select("Birch");
    EXPECT_EQ(flow().ticks()->count(), 0);
    EXPECT_EQ(flow().selected().warning, QStringLiteral("Remove the app with the package manager first."));
    EXPECT_EQ(flow().selected().command, QStringLiteral("sudo apt remove birch"));
    EXPECT_EQ(
        flow().selected().explanation,
        QStringLiteral("It cannot be moved from here: Vanto runs no package managers. Run this command in a "
                       "terminal. What stays behind afterwards is listed below and can be moved to the Trash "
                       "then: 1 item, 90 KB."));
    flow().toggleTick(0);
    EXPECT_EQ(flow().ticks()->count(), 0) << "only its package manager removes it";
    flow().toggleTick(rowOf(QStringLiteral("~/.cache/org.example.Birch")));
    EXPECT_EQ(flow().ticks()->count(), 1);

    select("Cedar");
    EXPECT_EQ(flow().leftovers()->rowCount(), 2);
    EXPECT_EQ(flow().leftovers()->itemAt(1), nullptr) << "words, and no item";
}

TEST_F(AppsFlowOn, WhatWasAskedBeforeTheLastQuestionIsDropped) {
    world->isHeld = true;
    flow().open();
    scene.waitUntil([this] { return world->readings == 1; });
    world->apps.resize(2);
    flow().readAgain();
    scene.waitUntil([this] { return flow().isLoaded(); });
    EXPECT_EQ(flow().countText(), QStringLiteral("2"));

    flow().select(0);
    scene.waitUntil([this] { return world->plans == 1; });
    flow().select(1);
    scene.waitUntil([this] { return !flow().isPlanning(); });
    world->isHeld = false;
    QTest::qWait(50);
    EXPECT_EQ(flow().countText(), QStringLiteral("2")) << "the longer list was read from an older question";
    EXPECT_EQ(flow().uninstallPlan()->app.name, "Birch");
    EXPECT_EQ(flow().selected().name, QStringLiteral("Birch"));
    EXPECT_EQ(flow().ticks()->count(), 0);
}

TEST_F(AppsFlowOn, WhatMovesLeavesTheListsAndComesBack) {
    read();
    select("Aster");
    flow().toggleTick(0);
    world->apps.erase(world->apps.begin());
    moves().review(flow().ticks());
    moves().confirm();
    bool wasDropped = false;
    QObject::connect(&moves(), &MoveFlow::moved,
                     [&] { wasDropped = flow().list()->rowOf(sample.app("Aster").path) < 0; });
    scene.waitUntil([this] { return moves().isReporting() && !flow().isBusy(); });
    EXPECT_EQ(moves().report()->moved()->rowCount(), 2);
    EXPECT_TRUE(wasDropped) << "before the list is read again";
    EXPECT_FALSE(flow().selected().valid);
    EXPECT_EQ(flow().leftovers()->rowCount(), 0);

    world->apps.insert(world->apps.begin(), sample.app("Aster"));
    moves().putBackAll();
    scene.waitUntil([this] { return !moves().isPuttingBack() && !flow().isBusy(); });
    EXPECT_TRUE(std::filesystem::exists(sample.app("Aster").path));
    EXPECT_EQ(flow().list()->rowOf(sample.app("Aster").path), 0);
}

TEST_F(AppsFlowOn, WhatRemovedAppsLeftIsAGroupBelowTheAppsWhateverTheOrder) {
    const QAbstractItemModelTester tester(flow().list());
    const QAbstractItemModelTester rows(flow().leftovers());
    read();
    const auto group = [this] {
        QStringList names;
        for (int row = flow().list()->rowCount() - 1;
             row >= 0 && flow().list()->value(row, "section") == QStringLiteral("removed"); --row)
            names.prepend(flow().list()->value(row, "name").toString());
        return names.join(QLatin1Char(' '));
    };
    EXPECT_EQ(group(), QStringLiteral("org.example.Willow poplar"));
    EXPECT_EQ(flow().summary(), QStringLiteral("13 apps")) << "they are none of them";
    EXPECT_TRUE(flow().removedText().startsWith(QStringLiteral("2 apps · 2")));
    flow().sortBy(true);
    flow().sortBy(true);
    EXPECT_EQ(group(), QStringLiteral("poplar org.example.Willow"));
    flow().setFindText(QStringLiteral("willow"));
    EXPECT_EQ(flow().shownText(), QStringLiteral("0 of 13 apps"));
    EXPECT_EQ(flow().list()->rowCount(), 1);

    flow().select(0);
    scene.waitUntil([this] { return !flow().isBusy(); });
    EXPECT_TRUE(flow().selected().removed);
    ASSERT_EQ(flow().leftovers()->rowCount(), 2);
    EXPECT_EQ(flow().ticks()->count(), 1) << "the cache";
    EXPECT_EQ(told(1, "title"), QStringLiteral("~/.var/app/org.example.Willow"));
    EXPECT_FALSE(told(1, "detail").isEmpty());
    flow().toggleTick(1);
    moves().review(flow().ticks());
    moves().confirm();
    scene.waitUntil([this] { return moves().isReporting() && !flow().isBusy(); });
    EXPECT_EQ(moves().report()->moved()->rowCount(), 2);
    EXPECT_FALSE(flow().selected().valid);
    flow().setFindText({});
    EXPECT_EQ(group(), QStringLiteral("poplar"));
    moves().putBackAll();
    scene.waitUntil([this] { return !moves().isPuttingBack() && !flow().isBusy(); });
    EXPECT_EQ(group(), QStringLiteral("poplar org.example.Willow"));
}

TEST_F(AppsFlowOn, WhatACommandRemovedIsAtHandUntilItIsLetStay) {
    scene.environment.options.openScreen = Screen::uninstall;
    const auto launcher = sample.home.file("launchers/birch.desktop");
    auto& birch = *std::ranges::find(world->apps, "Birch", &InstalledApp::name);
    birch.path = launcher;
    read();
    flow().select(flow().list()->rowOf(launcher));
    scene.waitUntil([this] { return !flow().isBusy(); });
    EXPECT_FALSE(flow().selected().removed);
    {
        const std::scoped_lock lock(world->mutex);
        std::erase_if(world->apps, [](const InstalledApp& app) { return app.name == "Birch"; });
        world->ids.packages["dpkg"] = {"base"};
    }
    std::filesystem::remove(launcher);
    scene.waitUntil([this] { return flow().selected().removed && !flow().isBusy(); });
    EXPECT_EQ(flow().selected().name, QStringLiteral("Birch"));
    EXPECT_TRUE(flow().selected().explanation.startsWith(QStringLiteral("It was on ")));
    ASSERT_EQ(flow().leftovers()->rowCount(), 1);
    EXPECT_EQ(told(0, "title"), QStringLiteral("~/.cache/org.example.Birch"));
    EXPECT_EQ(flow().ticks()->count(), 1);
    flow().dismissRemoved();
    scene.waitUntil([this] { return !flow().isBusy(); });
    EXPECT_FALSE(flow().selected().valid);
    flow().readAgain();
    scene.waitUntil([this] { return !flow().isBusy(); });
    flow().setFindText(QStringLiteral("birch"));
    EXPECT_EQ(flow().list()->rowCount(), 0);
    EXPECT_TRUE(std::filesystem::exists(sample.home.path(".cache/org.example.Birch/thumbs")));
}

TEST_F(AppsFlowOn, ARunningAppIsLockedUntilItHasQuit) {
    world->running = {sample.runningAster()};
    scene.environment.options.openScreen = Screen::uninstall;
    scene.environment.options.selectApp = "aster";
    read();
    EXPECT_EQ(flow().selected().name, QStringLiteral("Aster")) << "as the command line asked";
    EXPECT_EQ(flow().selected().runningText, QStringLiteral("running"));
    for (int row = 0; row < flow().leftovers()->rowCount(); ++row)
        EXPECT_FALSE(told(row, "refusal").isEmpty()) << row;
    EXPECT_TRUE(flow().selected().canAskToQuit);
    flow().askToQuit();
    scene.waitUntil([this] { return flow().selected().explanation.contains(QStringLiteral("could not")); });
    EXPECT_FALSE(flow().selected().canAskToQuit);
    {
        const std::scoped_lock lock(world->mutex);
        world->running.clear();
    }
    scene.waitUntil([this] { return flow().selected().runningText == QStringLiteral("not running"); });
    EXPECT_EQ(flow().ticks()->count(), 1);
}

TEST_F(AppsFlowOn, AnUnknownAppOnTheCommandLineIsSaid) {
    scene.environment.options.selectApp = "Yew";
    EXPECT_EQ(scene.model().screen(), Screen::uninstall);
    read();
    EXPECT_TRUE(scene.model().notice()->text().contains(QStringLiteral("Yew")));
    EXPECT_EQ(flow().selectedRow(), -1);
}

TEST_F(AppsFlowOn, TheListIsFoundAndSortedByWhatIsKnown) {
    const QAbstractItemModelTester tester(flow().list());
    read();
    const auto names = [this] {
        QStringList all;
        for (int row = 0; row < std::min(3, flow().list()->rowCount()); ++row)
            all << flow().list()->value(row, "name").toString();
        return all.join(QLatin1Char(' '));
    };
    flow().sortBy(true);
    EXPECT_EQ(names(), QStringLiteral("Birch Cedar Aster")) << "the largest first; Aster was measured";
    flow().sortBy(true);
    EXPECT_EQ(names(), QStringLiteral("Aster Cedar Birch")) << "those that are not known stay last";
    flow().setFindText(QStringLiteral(" debian"));
    EXPECT_EQ(names(), QStringLiteral("Cedar Birch"));
    EXPECT_EQ(flow().shownText(), QStringLiteral("2 of 13 apps"));
    EXPECT_EQ(
        flow().list()->match(flow().list()->index(0), Qt::DisplayRole, QStringLiteral("b")).value(0).row(),
        1);
    flow().setFindText(QStringLiteral("nothing like it"));
    EXPECT_FALSE(flow().isAnyShown());
}

} // namespace orbel::test
