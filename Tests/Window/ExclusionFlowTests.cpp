#include "AppModel/DuplicatesFlow.h"
#include "AppModel/ExclusionFlow.h"
#include "AppModel/MapModel.h"
#include "AppModel/TreeEdits.h"
#include "Models/ItemKey.h"
#include "ModelScene.h"
#include "Platform/HomeTrash.h"
#include "RealHome.h"
#include "Snapshots.h"
#include "Util/FileUrl.h"
#include "Views/TreemapItem.h"
#include "WindowScene.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

QUrl urlOf(const std::string& path) {
    return {QString::fromStdString(fileUrl(path))};
}

/// A measured home, of which folders are left out.
struct ExclusionsInTheModel : testing::Test {
    ExclusionsInTheModel() {
        useRealHome(scene.environment, home.path());
        scene.environment.dataVolumePath = home.path();
        scene.environment.scansFolder = scans.path();
        scene.environment.scan = [this, scan = scene.environment.scan](const auto& root, const auto& token,
                                                                       const auto& progress,
                                                                       const auto& exclusions) {
            auto result = scan(root, token, progress, exclusions);
            while (isHeld && !token.isCancelled())
                QThread::msleep(1);
            return result;
        };
        scene.world()->volume = VolumeInfo{.total = 40'000'000,
                                           .free = 10'000'000,
                                           .used = 30'000'000,
                                           .availableForImportantUsage = 10'000'000};
        home.file("Archive/old/a.mkv", 4'000'000);
        home.file("Archive/old/deep/b.mkv", 3'000'000);
        home.file("Archive/list", 20'000);
        home.file("Music/c.flac", 2'000'000);
    }
    void measure() {
        app().scan()->startScan(home.path());
        finish();
        scene.waitUntil([this] { return !app().compare()->isBusy(); });
    }
    AppModel& app() { return scene.model(); }
    ExclusionFlow& flow() { return *app().exclusions(); }
    const FileTree& tree() { return *app().scan()->tree(); }
    std::optional<NodeIndex> at(const char* path) {
        return tree().index(home.path(path), app().policy().canonicalizer());
    }
    void exclude(const char* path) {
        app().actions()->exclude(keyOf(home.path(path)));
        finish();
    }
    /// Until the tree is what it is to be.
    void finish() {
        scene.waitUntil([this] {
            QCoreApplication::processEvents();
            return !app().scan()->isScanning() && !app().rescan()->isRunning() && !app().treeEdits().isBusy()
                   && isInLine();
        });
    }
    /// Whether all that is to be left out is, and nothing else.
    bool isInLine() {
        const auto& paths = app().scan()->excluded().paths();
        const auto isLeftOut = [&](const std::string& path) {
            const auto node = tree().index(path, app().policy().canonicalizer());
            return !node || *node == 0 || tree().isExcluded(*node);
        };
        return std::ranges::all_of(paths, isLeftOut)
               && std::ranges::all_of(tree().excludedNodes, [&](NodeIndex node) {
                      return app().scan()->excluded().contains(tree().walkedPath(node));
                  });
    }

    TemporaryFolder home;
    TemporaryFolder scans;
    std::atomic<bool> isHeld = false;
    ModelScene scene;
};

} // namespace

TEST_F(ExclusionsInTheModel, AFolderLeavesTheTotalsAtOnceAndComesBack) {
    measure();
    const auto whole = tree().allocated(0);
    const auto archived = tree().allocated(*at("Archive/old/deep"));
    EXPECT_TRUE(app().actions()->isExcludable(keyOf(home.path("Archive/old/deep"))));
    EXPECT_FALSE(app().actions()->isExcludable(keyOf(home.path())));
    EXPECT_FALSE(app().actions()->isExcludable(keyOf(home.path("Music/c.flac"))));

    app().map()->ticking()->toggle(*at("Archive/old"));
    scene.waitUntil([this] { return app().map()->ticking()->isTicked(*at("Archive/old")); });
    app().map()->ticking()->toggle(*at("Music/c.flac"));
    scene.waitUntil([this] { return app().map()->ticking()->isTicked(*at("Music/c.flac")); });
    exclude("Archive/old/deep");
    EXPECT_EQ(tree().allocated(0), whole - archived);
    EXPECT_FALSE(at("Archive/old/deep/b.mkv"));
    EXPECT_FALSE(app().map()->ticking()->isTicked(*at("Archive/old")))
        << "what was approved is not what it shows now";
    EXPECT_TRUE(app().map()->ticking()->isTicked(*at("Music/c.flac")));
    EXPECT_EQ(flow().leftOutText(), QStringLiteral("1 folder left out"));
    EXPECT_EQ(withoutIsolates(flow().leftOutSentence()), QStringLiteral("~/Archive/old/deep was left out"));
    EXPECT_EQ(app().map()->facts(*at("Archive/old/deep")).size, QStringLiteral("Not measured · excluded"));
    EXPECT_TRUE(withoutIsolates(app().notice()->text())
                    .startsWith(QStringLiteral("~/Archive/old/deep is left out of")));
    EXPECT_EQ(app().notice()->action(), QStringLiteral("Undo"));
    app().map()->select(*at("Archive/old"));
    scene.waitUntil([this] { return !app().map()->ticking()->refusal().isEmpty(); });
    EXPECT_EQ(withoutIsolates(app().map()->ticking()->refusal()),
              QStringLiteral("Holds a folder left out of measuring: ~/Archive/old/deep"));

    // What was changed meanwhile is seen when it is measured again, and nothing else is.
    home.file("Archive/old/deep/new.mkv", 1'000'000);
    home.file("Music/new.flac", 1'000'000);
    app().notice()->act();
    finish();
    EXPECT_TRUE(app().notice()->text().isEmpty());
    EXPECT_FALSE(flow().isAny());
    EXPECT_TRUE(at("Archive/old/deep/new.mkv"));
    EXPECT_FALSE(at("Music/new.flac"));
    EXPECT_EQ(flow().leftOutText(), QString());
}

TEST_F(ExclusionsInTheModel, AreKeptAndEveryScanKeepsToThem) {
    scene.environment.settings->setValue(
        QStringLiteral("excludedFolders"),
        QStringList{QStringLiteral("no url"), urlOf(home.path("Archive/old")).toString()});
    measure();
    EXPECT_EQ(flow().folders()->rowCount(), 1);
    EXPECT_FALSE(at("Archive/old/a.mkv"));
    const auto bytes = tree().allocated(0);
    // Measuring a folder again that holds it does not bring it back.
    app().rescan()->start(*at("Archive"));
    finish();
    EXPECT_EQ(tree().allocated(0), bytes);
    EXPECT_EQ(flow().leftOutText(), QStringLiteral("1 folder left out"));

    home.link("way", home.path("Music"));
    flow().addFolder(urlOf(home.path("way/")));
    scene.waitUntil([this] { return flow().folders()->rowCount() == 2; });
    finish();
    EXPECT_EQ(flow().folders()->rows()[1].place, home.path("Music")) << "where it leads";
    EXPECT_FALSE(at("Music/c.flac"));
    for (const auto& none : {home.path("Archive/list"), home.path("gone"), std::string("/")}) {
        flow().addFolder(urlOf(none));
        scene.waitUntil([this] { return !app().notice()->text().isEmpty(); });
        app().notice()->dismiss();
    }
    EXPECT_EQ(flow().folders()->rowCount(), 2);

    // The whole home, and what is in what is left out: what is chosen to be measured is measured.
    flow().addFolder(urlOf(home.path()));
    scene.waitUntil([this] { return flow().folders()->rowCount() == 3; });
    measure();
    EXPECT_EQ(app().scan()->tree()->excludedNodes.size(), 2U);
    app().scan()->startScan(home.path("Archive/old/deep"));
    finish();
    EXPECT_EQ(tree().count(), 2);

    // Several at once, one after another.
    measure();
    for (int row = 3; row-- > 0;)
        flow().remove(row);
    finish();
    EXPECT_TRUE(at("Archive/old/deep/b.mkv") && at("Music/c.flac"));
    EXPECT_EQ(scene.environment.settings->value(QStringLiteral("excludedFolders")).toStringList(),
              QStringList());
}

TEST_F(ExclusionsInTheModel, HoldBesideAFolderThatIsBeingMeasured) {
    measure();
    const auto whole = tree().allocated(0);
    const auto notMeasured = app().disk()->ledger()->notMeasured().bytes();
    const auto archived = tree().allocated(*at("Archive/old"));
    // It began when nothing was left out.
    isHeld = true;
    app().rescan()->start(*at("Archive"));
    app().actions()->exclude(keyOf(home.path("Archive/old")));
    scene.waitUntil([this] { return isInLine(); });
    EXPECT_TRUE(app().rescan()->isRunning());
    isHeld = false;
    finish();
    EXPECT_EQ(tree().allocated(0), whole - archived);
    const auto& ledger = *app().disk()->ledger();
    EXPECT_EQ(ledger.notMeasured().bytes(), notMeasured + archived);
    EXPECT_EQ(ledger.writtenSince().bytes() + ledger.freedSince().bytes(), 0);

    isHeld = true;
    app().rescan()->start(*at("Archive"));
    flow().remove(0);
    isHeld = false;
    finish();
    EXPECT_EQ(tree().allocated(0), whole);
    EXPECT_EQ(ledger.notMeasured().bytes(), notMeasured);
    EXPECT_EQ(ledger.writtenSince().bytes() + ledger.freedSince().bytes(), 0);
}

TEST_F(ExclusionsInTheModel, TheListsThatDoNotFollowTheTreeKeepToThemToo) {
    home.file("Archive/old/copy.zip", std::string(1'500'000, 'x'));
    home.file("Music/copy.zip", std::string(1'500'000, 'x'));
    measure();
    auto& duplicates = *app().duplicates();
    duplicates.search();
    scene.waitUntil([&] { return duplicates.groups()->rowCount() == 3 && !duplicates.isBusy(); });
    const auto refusalOf = [&](const std::string& path) {
        for (int row = 1; row < 3; ++row) {
            if (duplicates.groups()->fileAt(row).path == path)
                return duplicates.groups()->value(row, "refusal").toString();
        }
        return QString();
    };
    exclude("Archive");
    scene.waitUntil([&] {
        return refusalOf(home.path("Archive/old/copy.zip")) == QStringLiteral("Left out of measuring");
    });
    EXPECT_EQ(refusalOf(home.path("Music/copy.zip")), QString());
    app().notice()->act();
    scene.waitUntil([&] { return refusalOf(home.path("Archive/old/copy.zip")).isEmpty(); });
}

TEST_F(ExclusionsInTheModel, GrowthAndTheKnownNumberOfEntriesStayHonest) {
    measure();
    home.file("Archive/old/more.mkv", 9'000'000);
    home.file("Music/more.flac", 5'000'000);
    measure();
    const auto grown = [this] {
        std::vector<std::string> places;
        for (const auto& folder : app().compare()->growth()->folders()->rows())
            places.push_back(folder.place);
        return places;
    };
    using Places = std::vector<std::string>;
    EXPECT_EQ(grown(), (Places{home.path("Archive/old"), home.path("Music")}));
    EXPECT_TRUE(app().scan()->knownRoots().entriesOf(home.path()));
    exclude("Archive/old");
    EXPECT_EQ(grown(), (Places{home.path("Music")}));
    EXPECT_FALSE(app().scan()->knownRoots().entriesOf(home.path())) << "of another set of folders";
    home.file("Music/again.flac", 6'000'000);
    measure();
    EXPECT_EQ(grown(), (Places{home.path("Music")})) << "nothing shrank or grew by what is left out";
    EXPECT_EQ(app().scan()->knownRoots().entriesOf(home.path()), tree().count());
    flow().remove(0);
    finish();
    EXPECT_FALSE(app().scan()->knownRoots().entriesOf(home.path()));
    home.file("Music/last.flac", 7'000'000);
    measure();
    EXPECT_EQ(grown(), (Places{home.path("Music")}));
}

namespace {

/// The story of one who leaves an archive out.
struct ExclusionsInTheWindow : testing::Test {
    void open(int width = 1440, int height = 900) {
        place = scene.folder() + "/home";
        for (const auto& [name, bytes] : {std::pair{"Archive/a.mkv", 600'000}, {"Videos/b.mkv", 500'000}}) {
            fs::create_directories(fs::path(place + '/' + name).parent_path());
            std::ofstream(place + '/' + name) << std::string(static_cast<std::size_t>(bytes), 'x');
        }
        useRealHome(scene.environment, place);
        scene.environment.dataVolumePath = place;
        scene.environment.readVolume = [](const std::string&) {
            return VolumeInfo{.total = 3'000'000,
                              .free = 1'000'000,
                              .used = 1'400'000,
                              .availableForImportantUsage = 1'000'000};
        };
        scene.environment.measureTrash = [](const std::string&) { return 0; };
        scene.open(width, height);
        scene.app().scan()->startScan(place);
        ASSERT_TRUE(
            scene.waitUntil([&] { return scene.app().scan()->scanState() == ScanFlow::ScanState::done; }));
        scene.settle();
    }
    NodeIndex node(const std::string& name) {
        return scene.app()
            .scan()
            ->tree()
            ->index(place + '/' + name, scene.app().policy().canonicalizer())
            .value();
    }
    bool isLeftOut() { return scene.app().scan()->tree()->isExcluded(node("Archive")); }

    WindowScene scene;
    std::string place;
};

} // namespace

TEST_F(ExclusionsInTheWindow, FromTheMenuToTheSettingsAndBack) {
    open();
    scene.app().setScreen(Screen::map);
    scene.settle();
    auto* const map = qobject_cast<TreemapItem*>(scene.item(QStringLiteral("map.view")));
    const auto folder = map->boxOf(node("Archive"));
    QTest::mouseClick(&scene.window(), Qt::RightButton, Qt::NoModifier,
                      map->mapToScene(folder.topLeft() + QPointF(40, 8)).toPoint());
    scene.settle();
    EXPECT_TRUE(scene.says(QStringLiteral("Exclude from Measuring")));
    keepPicture(scene, QStringLiteral("exclude-menu"));
    scene.click(QStringLiteral("map.menu.exclude"));
    ASSERT_TRUE(scene.waitUntil([&] { return isLeftOut(); }));
    scene.settle();
    EXPECT_TRUE(scene.isShown(QStringLiteral("notice")));
    EXPECT_TRUE(map->boxOf(node("Archive")).isEmpty());
    scene.app().map()->select(node("Archive"));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.says(QStringLiteral("Left out of measuring")); }));
    EXPECT_TRUE(scene.says(QStringLiteral("Folder · Not measured · excluded")));
    // Away from the map, whose hints lie over it.
    QTest::mouseMove(&scene.window(), QPoint(720, 10));
    keepPicture(scene, QStringLiteral("exclude-map"));
    scene.click(QStringLiteral("notice.close"));
    EXPECT_FALSE(scene.isShown(QStringLiteral("notice")));

    scene.app().setScreen(Screen::overview);
    scene.settle();
    EXPECT_TRUE(scene.says(QStringLiteral("1 folder left out")));
    EXPECT_TRUE(scene.says(scene.app().exclusions()->leftOutSentence())) << "under what was not measured";
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.term.since"))) << "nothing was written by that";
    keepPicture(scene, QStringLiteral("exclude-overview"));
    // With the keyboard: the link, its page, the button that takes it out again.
    scene.item(QStringLiteral("overview.scopeLink"))->forceActiveFocus(Qt::TabFocusReason);
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("settings.addFolder")));
    keepPicture(scene, QStringLiteral("exclude-settings"));
    scene.press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("settings.include.0")));
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("settings.addFolder")));
    EXPECT_TRUE(scene.says(QStringLiteral("No folder is left out")));
    ASSERT_TRUE(scene.waitUntil([&] { return !isLeftOut(); }));
    scene.app().setScreen(Screen::map);
    scene.settle();
    EXPECT_EQ(map->boxOf(node("Archive")), folder) << "measured again by itself";
    scene.app().setScreen(Screen::overview);
    scene.settle();
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.term.since")));
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.scopeLink")));
}

TEST_F(ExclusionsInTheWindow, TheMapOfAFolderThatWasLeftOutSaysSo) {
    open();
    scene.app().setScreen(Screen::map);
    scene.app().exclusions()->exclude(node("Archive"));
    ASSERT_TRUE(scene.waitUntil([&] { return isLeftOut(); }));
    scene.app().notice()->dismiss();
    scene.app().map()->show(node("Archive"));
    scene.settle();
    EXPECT_TRUE(scene.says(QStringLiteral("Not measured · excluded")));
    keepPicture(scene, QStringLiteral("exclude-inside"));
    scene.click(QStringLiteral("map.include"));
    ASSERT_TRUE(scene.waitUntil([&] { return !isLeftOut(); }));
    scene.settle();
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("map.view")));
}

TEST_F(ExclusionsInTheWindow, ASmallWindowHasRoomForIt) {
    open(800, 560);
    scene.app().exclusions()->exclude(node("Archive"));
    ASSERT_TRUE(scene.waitUntil([&] { return isLeftOut(); }));
    scene.settle();
    keepPicture(scene, QStringLiteral("exclude-overview-800x560"));
    scene.click(QStringLiteral("overview.scopeLink"));
    EXPECT_TRUE(scene.hasFocus(QStringLiteral("settings.addFolder")));
    keepPicture(scene, QStringLiteral("exclude-settings-800x560"));
    auto* const button = scene.item(QStringLiteral("settings.addFolder"));
    EXPECT_LT(button->mapToScene({0, button->height()}).y(), 530) << "in sight";
    const auto deep = place + "/Videos/A folder whose name goes on and on/and another one inside of that one"
                      + "/withoutasingleblankinitwherealinecouldendbutyetlongerthanthelinethatithas/last";
    fs::create_directories(deep);
    scene.app().exclusions()->addFolder(urlOf(deep));
    ASSERT_TRUE(scene.waitUntil([&] { return scene.isShown(QStringLiteral("settings.include.1")); }));
    keepPicture(scene, QStringLiteral("exclude-settings-800x560-long"));
    scene.setFontScale(2);
    scene.app().showExclusions();
    keepPicture(scene, QStringLiteral("exclude-settings-800x560-large-font"));
    scene.click(QStringLiteral("notice.action"));
    ASSERT_TRUE(scene.waitUntil([&] { return !isLeftOut(); }));
    EXPECT_EQ(scene.app().exclusions()->folders()->rowCount(), 1);
}

} // namespace orbel::test
