#include "AppModel/MapModel.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/RescanFlow.h"
#include "AppModel/TreeEdits.h"
#include "ModelScene.h"
#include "Platform/HomeTrash.h"
#include "Scan/TreeScanner.h"

#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// A measured home that is shown on the map.
struct RescanInTheModel : testing::Test {
    RescanInTheModel() {
        scene.environment.home = home.path();
        scene.environment.dataVolumePath = home.path();
        scene.environment.trashFolder = platform::homeTrash(home.path());
        // What is dropped may go on after the test.
        scene.environment.scan = [isHeld = isHeld](const auto& root, const auto& token, const auto& progress,
                                                   const auto& exclusions) {
            auto result = TreeScanner::scan(root, std::nullopt, token, progress, exclusions);
            while (*isHeld && !token.isCancelled())
                QThread::msleep(1);
            return result;
        };
        home.file("Videos/a.mkv", 20'000);
        home.file("Videos/Old/b.mkv", 20'000);
        home.file("Music/c.flac", 20'000);
        app().scan()->startScan(home.path());
        scene.waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; });
    }

    AppModel& app() { return scene.model(); }
    MapModel& map() { return *app().map(); }
    std::optional<NodeIndex> at(const char* path) {
        return app().scan()->tree()->index(home.path(path), app().policy().canonicalizer());
    }
    void rescan(const char* path) {
        app().rescan()->start(at(path).value());
        finish();
    }
    void finish() {
        scene.waitUntil([this] {
            return !app().rescan()->isRunning() && !app().treeEdits().isBusy() && !app().scan()->isScanning();
        });
    }

    TemporaryFolder home;
    std::shared_ptr<std::atomic<bool>> isHeld = std::make_shared<std::atomic<bool>>(false);
    ModelScene scene;
};

} // namespace

TEST_F(RescanInTheModel, BringsTheFolderUpToDateAndTheMapKeepsItsPlace) {
    map().show(*at("Videos"));
    map().select(*at("Videos/a.mkv"));
    for (const auto* path : {"Videos/a.mkv", "Music/c.flac"}) {
        map().ticking()->toggle(*at(path));
        scene.waitUntil([&] { return map().ticking()->isTicked(*at(path)); });
    }
    home.file("Videos/Old/new.mkv", 50'000);
    fs::remove(home.path("Videos/Old/b.mkv"));
    const auto before = app().scan()->tree()->allocated(0);
    rescan("Videos");
    EXPECT_TRUE(at("Videos/Old/new.mkv"));
    EXPECT_FALSE(at("Videos/Old/b.mkv"));
    EXPECT_GT(app().scan()->tree()->allocated(0), before);
    EXPECT_EQ(app().scan()->figures()->entries().toUInt(), app().scan()->tree()->descendantCount(0) + 1);
    EXPECT_EQ(map().focus(), *at("Videos"));
    EXPECT_EQ(map().selectedNode(), at("Videos/a.mkv"));
    EXPECT_FALSE(map().ticking()->isTicked(*at("Videos/a.mkv")))
        << "what was measured again is not what was ticked";
    EXPECT_TRUE(map().ticking()->isTicked(*at("Music/c.flac")));

    fs::remove_all(home.path("Videos"));
    rescan("Videos/Old");
    EXPECT_FALSE(at("Videos"));
    EXPECT_EQ(map().focus(), 0U);
}

TEST_F(RescanInTheModel, IsStoppedAndGivesWayToWhatChangesTheDisk) {
    *isHeld = true;
    home.file("Videos/new.mkv", 50'000);
    const auto tree = app().scan()->tree();
    app().rescan()->start(*at("Videos"));
    EXPECT_EQ(app().rescan()->text(), QStringLiteral("Measuring ~/Videos again…"));
    app().rescan()->stop();
    EXPECT_TRUE(app().rescan()->text().isEmpty());
    app().rescan()->start(*at("Videos"));
    map().ticking()->toggle(*at("Music/c.flac"));
    scene.waitUntil([this] { return map().ticking()->isTicked(*at("Music/c.flac")); });
    app().moves()->review(map().ticking()->ticks());
    app().moves()->confirm();
    EXPECT_FALSE(app().rescan()->isRunning());
    app().rescan()->start(*at("Videos"));
    EXPECT_FALSE(app().rescan()->isRunning()) << "not beside a batch";
    scene.waitUntil([this] { return app().moves()->isReporting(); });
    finish();
    EXPECT_FALSE(at("Music/c.flac"));
    EXPECT_FALSE(at("Videos/new.mkv")) << "what was stopped changes nothing";

    app().rescan()->start(*at("Videos"));
    *isHeld = false;
    app().scan()->measureAgain();
    EXPECT_FALSE(app().rescan()->isRunning());
    finish();
    EXPECT_TRUE(at("Videos/new.mkv"));
}

} // namespace orbel::test
