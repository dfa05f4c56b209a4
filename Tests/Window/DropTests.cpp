#include "AppModel/DropFlow.h"
#include "AppModel/RecentFolders.h"
#include "SampleDisk.h"
#include "Snapshots.h"
#include "WindowScene.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <QDropEvent>
#include <QMimeData>

namespace orbel::test {

namespace {

/// A window over which files and folders are dragged.
struct DragOverTheWindow : testing::Test {
    DragOverTheWindow() {
        scene.environment.scan = [roots = roots](const std::string& root, const ScanCancellation&,
                                                 const ScanProgressCallback&, const Exclusions&) {
            roots->push_back(root);
            return ScanResult{.tree = {}, .startedAt = {}, .firstProgress = {}, .duration = 1};
        };
        scene.environment.home = places.path();
        places.folder("Films");
        places.folder("Music");
        places.file("notes.txt");
        scene.open();
    }
    void drag(const std::vector<std::string>& names) {
        QList<QUrl> urls;
        for (const auto& name : names)
            urls << QUrl::fromLocalFile(QString::fromStdString(places.path(name)));
        data.setUrls(urls);
        QDragEnterEvent enter({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&scene.window(), &enter);
        EXPECT_TRUE(scene.waitUntil([&] { return !scene.app().drop()->statement().isEmpty(); }));
        scene.settle();
    }
    void leave() {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(&scene.window(), &event);
        scene.settle();
        EXPECT_FALSE(scene.isShown(QStringLiteral("drop.overlay")));
    }
    void drop() {
        QDropEvent event({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&scene.window(), &event);
        scene.settle();
        EXPECT_FALSE(scene.isShown(QStringLiteral("drop.overlay")));
    }

    TemporaryFolder places;
    std::shared_ptr<std::vector<std::string>> roots = std::make_shared<std::vector<std::string>>();
    WindowScene scene;
    QMimeData data;
};

} // namespace

TEST_F(DragOverTheWindow, TheFirstFolderIsNamedAndMeasuredAndAFileIsNot) {
    drag({"notes.txt"});
    EXPECT_TRUE(scene.says(QStringLiteral("Drop a folder")));
    drop();
    EXPECT_TRUE(roots->empty());

    drag({"Films"});
    EXPECT_TRUE(scene.says(QStringLiteral("Measure ~/Films")));
    leave();

    drag({"notes.txt", "Films", "Music"});
    EXPECT_TRUE(scene.says(QStringLiteral("Measure ~/Films")));
    EXPECT_TRUE(scene.says(QStringLiteral("The first of 2 folders")));
    drop();
    EXPECT_TRUE(scene.waitUntil([&] { return *roots == std::vector{places.path("Films")}; }));
}

TEST_F(DragOverTheWindow, AScanThatWasKeptIsOpenedWhereThereIsNoFolder) {
    SampleDisk::keptIn(places.path(), "larch");
    drag({"kept.orbel", "Films"});
    EXPECT_TRUE(scene.says(QStringLiteral("Measure ~/Films")));
    leave();
    drag({"notes.txt", "kept.orbel"});
    EXPECT_TRUE(scene.says(QStringLiteral("Open ~/kept.orbel")))
        << scene.app().drop()->statement().toStdString();
    drop();
    EXPECT_TRUE(scene.waitUntil([&] { return scene.app().scan()->isForeign(); }));
    EXPECT_TRUE(roots->empty());
}

TEST(RecentFoldersInTheOverview, AreMeasuredByAClickAndForgottenOnRequest) {
    WindowScene scene;
    TemporaryFolder places;
    const std::vector folders{places.folder("Films"), places.folder("Music")};
    scene.open();
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.recent")));
    const auto measure = [&](const auto& start) {
        start();
        ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->hasTree(); }));
    };
    measure([&] { scene.app().scan()->scanDisk(); });
    scene.settle();
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.recent"))) << "the whole disk is no folder";
    for (const auto& folder : folders)
        measure([&] { scene.app().scan()->startScan(folder); });
    scene.click(QStringLiteral("overview.recent"));
    ASSERT_EQ(scene.app().recent()->list()->rowCount(), 2);
    keepPicture(scene, QStringLiteral("recent"));
    scene.click(QStringLiteral("overview.recent.1"));
    EXPECT_EQ(scene.app().scan()->scanRoot(), folders[0]);
    ASSERT_TRUE(scene.waitUntil([&] { return scene.app().scan()->hasTree(); }));

    std::filesystem::remove(folders[1]);
    scene.app().recent()->refresh();
    EXPECT_TRUE(scene.waitUntil([&] { return scene.app().recent()->list()->rowCount() == 1; }));
    scene.click(QStringLiteral("overview.recent"));
    scene.click(QStringLiteral("overview.recent.clear"));
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.recent")));
}

} // namespace orbel::test
