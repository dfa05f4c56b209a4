#include "AppModel/KeptScanFlow.h"
#include "AppModel/TreeEdits.h"
#include "HomeWithFilms.h"
#include "SampleDisk.h"
#include "Saved/ScanArchive.h"
#include "Snapshots.h"
#include "WindowScene.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <QSignalSpy>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// A home, and a scan of the very same paths that was kept on another computer.
struct KeptScanOf : HomeWithFilms {
    void measure() {
        app().scan()->startScan(home.path());
        scene.waitUntil([this] { return app().scan()->hasTree(); });
    }
    std::string kept(const std::string& machine = "larch") {
        ScanOrigin origin{.machine = machine, .user = {}, .program = {}};
        origin.volume =
            VolumeInfo{.total = 5000, .free = 1000, .used = 3000, .availableForImportantUsage = 1000};
        return home.file("larch.orbel", scanFileBytes(scanned().tree, origin));
    }
    void open(const std::string& path) {
        const QSignalSpy ended(app().scan(), &ScanFlow::scanFinished);
        const QSignalSpy failed(app().kept(), &KeptScanFlow::failed);
        app().kept()->openFile(QUrl::fromLocalFile(QString::fromStdString(path)));
        scene.waitUntil([&] { return ended.count() + failed.count() > 0; });
    }
};

} // namespace

TEST_F(KeptScanOf, AnotherComputerIsShownAndNothingOfItMoves) {
    const auto file = kept();
    measure();
    auto& map = *app().map();
    auto& moves = *app().moves();
    map.ticking()->toggle(node(film));
    scene.waitUntil([&] { return map.ticking()->ticks()->count() == 1; });
    const auto ticked = map.ticking()->ticks()->items();
    moves.review(map.ticking()->ticks());
    ASSERT_TRUE(moves.isConfirming());
    const int looksBefore = *looks;
    open(file);

    ASSERT_TRUE(app().scan()->isForeign());
    const auto statement = QStringLiteral("Measured on larch; nothing can be moved from here");
    EXPECT_EQ(app().scan()->keptStatement(), statement);
    EXPECT_FALSE(app().scan()->isWholeDisk()) << "not of this computer";
    EXPECT_FALSE(moves.isConfirming()) << "of a tree that is gone";
    EXPECT_EQ(map.ticking()->ticks()->count(), 0);
    map.ticking()->toggle(node(film));
    map.ticking()->tickAll();
    map.select(node(film));
    EXPECT_EQ(map.ticking()->refusal(), statement);
    auto& large = *app().largeOld();
    large.setLargeOldQuery({.minimumBytes = 1, .unusedFor = std::nullopt});
    scene.waitUntil([&] { return large.isKnown() && !large.isBusy(); });
    EXPECT_GE(large.largeOldRows().size(), 2) << "listed all the same";
    large.toggleTick(node(film));
    large.tickAll();
    for (const auto screen : {Screen::tidy, Screen::duplicates})
        app().setScreen(screen);
    app().tidy()->lookAgain();
    app().duplicates()->search();
    app().rescan()->start(node(home.path("Videos")));
    app().exclusions()->exclude(node(home.path("Videos")));
    app().scan()->measureAgain();
    EXPECT_FALSE(app().tidy()->isBusy() || app().duplicates()->isBusy() || app().rescan()->isRunning());
    EXPECT_FALSE(app().scan()->isScanning() || app().exclusions()->isAny());
    app().notice()->dismiss();
    moves.ask(ticked);
    EXPECT_FALSE(moves.isConfirming());
    EXPECT_EQ(app().notice()->text(), statement);
    QTest::qWait(50);
    EXPECT_EQ(map.ticking()->ticks()->count() + large.ticks()->count(), 0);
    EXPECT_EQ(*looks, looksBefore) << "nothing is asked on behalf of it";

    // Its own volume adds up, and the disk of this computer is not mixed with it.
    const auto& ledger = *app().disk()->ledger();
    EXPECT_EQ(ledger.total().bytes(), 5000);
    EXPECT_EQ(ledger.path(), QStringLiteral("larch"));
    EXPECT_FALSE(app().disk()->ownLedger()->isMeasured());
    app().disk()->refreshVolume();
    QTest::qWait(50);
    EXPECT_EQ(ledger.total().bytes(), 5000) << "nor later";
    EXPECT_EQ(app().disk()->ownLedger()->total().bytes(), 1000);

    measure();
    EXPECT_FALSE(app().scan()->isForeign());
    EXPECT_TRUE(app().scan()->isWholeDisk() && app().scan()->keptStatement().isEmpty());
    scene.waitUntil([&] { return app().disk()->ownLedger()->isMeasured(); });
    EXPECT_EQ(ledger.total().bytes(), 1000);
    map.ticking()->toggle(node(film));
    scene.waitUntil([&] { return map.ticking()->ticks()->count() == 1; });
    moves.review(map.ticking()->ticks());
    EXPECT_TRUE(moves.isConfirming());
    EXPECT_TRUE(fs::exists(film) && fs::exists(copy));
}

TEST_F(KeptScanOf, AnotherComputerStaysAsItWasWhateverHappensHere) {
    const auto file = kept("");
    measure();
    app().map()->ticking()->toggle(node(film));
    scene.waitUntil([&] { return app().map()->ticking()->ticks()->count() == 1; });
    app().moves()->review(app().map()->ticking()->ticks());
    app().moves()->confirm();
    scene.waitUntil([&] { return app().moves()->isReporting() && !app().treeEdits().isBusy(); });
    ASSERT_FALSE(fs::exists(film));
    app().exclusions()->addFolder(QUrl::fromLocalFile(QString::fromStdString(home.path("Videos"))));
    scene.waitUntil([&] { return app().exclusions()->isAny() && !app().treeEdits().isBusy(); });
    open(file);
    EXPECT_EQ(app().scan()->keptStatement(),
              QStringLiteral("Measured elsewhere; nothing can be moved from here"));
    const auto shown = app().scan()->tree();
    app().moves()->putBackAll();
    scene.waitUntil([&] { return !app().moves()->isPuttingBack() && fs::exists(film); });
    QTest::qWait(50);
    EXPECT_EQ(app().scan()->tree(), shown);
    EXPECT_FALSE(shown->isExcluded(node(home.path("Videos")))) << "what is left out here is not";
}

TEST_F(KeptScanOf, AnotherComputerIsComparedWithAnEarlierFileOfIt) {
    const auto earlier = home.path("earlier.scan");
    fs::copy(kept(), earlier);
    home.file("Videos/new.mkv", std::size_t{2'000'000});
    const auto file = kept();
    open(file);
    auto& compare = *app().compare();
    EXPECT_TRUE(compare.isPossible());
    EXPECT_EQ(compare.scanTexts(), QStringList()) << "what this computer measured is of another disk";
    const auto compareWith = [&](const std::string& path) {
        compare.openFile(QUrl::fromLocalFile(QString::fromStdString(path)));
        scene.waitUntil([&] { return !compare.isBusy(); });
    };
    compareWith(earlier);
    EXPECT_EQ(compare.scan(), 0);
    ASSERT_EQ(compare.scanTexts().size(), 1);
    EXPECT_TRUE(compare.scanTexts().front().startsWith(QStringLiteral("earlier.scan · ")));
    EXPECT_EQ(compare.growth()->since(), QStringLiteral("an unknown day"));
    app().changes()->setShown(true);
    scene.waitUntil([&] { return app().changes()->isKnown() && !app().changes()->isRunning(); });
    const auto changes = app().changes()->rows();
    EXPECT_TRUE(changes
                    ->match(changes->index(0), Qt::DisplayRole, QStringLiteral("new.mkv"), 1,
                            Qt::MatchStartsWith | Qt::MatchWrap)
                    .size()
                == 1);

    compare.openFile(QUrl::fromLocalFile(QString::fromStdString(earlier)));
    compare.openFile(QUrl::fromLocalFile(QString::fromStdString(earlier)));
    EXPECT_EQ(app().notice()->text(), QStringLiteral("A scan is compared when nothing else is."));
    scene.waitUntil([&] { return !compare.isBusy(); });
    compareWith(film);
    EXPECT_TRUE(app().notice()->text().contains(QStringLiteral("is not a scan file")));
    EXPECT_EQ(compare.scan(), 0) << "as before";
    open(file);
    EXPECT_EQ(compare.scan(), -1);
}

TEST_F(KeptScanOf, AFileThatIsDamagedOrNoneChangesNothing) {
    const auto file = kept();
    measure();
    const auto shown = app().scan()->tree();
    fs::resize_file(file, fs::file_size(file) - 1);
    open(file);
    EXPECT_EQ(app().notice()->text().remove(QChar(0x2068)).remove(QChar(0x2069)),
              QStringLiteral("~/larch.orbel could not be opened: The scan file is damaged"));
    for (const auto& path : {film, home.path("nowhere"), home.path("Videos")}) {
        open(path);
        EXPECT_TRUE(app().notice()->text().endsWith(QStringLiteral("is not a scan file."))) << path;
    }
    EXPECT_EQ(app().scan()->tree(), shown);
    EXPECT_FALSE(app().scan()->isKept());

    // What begins meanwhile counts more.
    const auto whole = kept();
    app().kept()->open(whole);
    measure();
    EXPECT_FALSE(app().scan()->isKept());
    app().kept()->open(whole);
    app().scan()->startScan(home.path());
    app().kept()->open(whole);
    EXPECT_EQ(app().notice()->text(), QStringLiteral("A scan is opened when nothing else runs."));
}

TEST_F(KeptScanOf, AnExportShowsWhatItTells) {
    open(home.file("nas.json",
                   R"([1,2,{"progname":"ncdu","progver":"1.18","timestamp":1763370000},)"
                   R"([{"name":"/srv"},{"name":"film.mkv","asize":9000000000,"dsize":9000000000}]])"));
    auto& scan = *app().scan();
    EXPECT_EQ(scan.keptStatement(), QStringLiteral("Measured elsewhere; nothing can be moved from here"));
    EXPECT_TRUE(scan.scopeText().startsWith(QStringLiteral("/srv · measured on 17 November")))
        << scan.scopeText().toStdString();
    EXPECT_FALSE(scan.scopeText().contains(QStringLiteral(" in "))) << "how long it took is not known";
    EXPECT_EQ(scan.measuredText(), QStringLiteral("Measured 9.0 GB · 2 entries"));
}

TEST_F(KeptScanOf, OnlyWhatIsMeasuredHereIsKeptAndOnlyWhileThatIsWanted) {
    scene.environment.scansFolder = home.path("scans");
    const ScanArchive archive(scene.environment.scansFolder);
    const auto keptScans = [&] {
        scene.waitUntil([this] { return !app().compare()->isBusy(); });
        return archive.size().scans;
    };
    const auto file = kept();
    measure();
    EXPECT_EQ(keptScans(), 1);
    open(file);
    EXPECT_EQ(keptScans(), 1) << "not of another computer";
    app().keeping()->keepNone();
    scene.waitUntil([&] { return archive.size().scans == 0; });
    measure();
    EXPECT_EQ(keptScans(), 0);
    app().keeping()->keep();
    measure();
    EXPECT_EQ(keptScans(), 1);
}

TEST_F(KeptScanOf, TheCommandLineIsOpenedUnlessItMeasures) {
    scene.environment.options.openScanPath = kept();
    scene.waitUntil([this] { return app().scan()->isForeign(); });
}

namespace {

/// A window that shows a scan of the sample disk that was kept on "larch".
struct ForeignWindow : WindowScene {
    void show(int width = 1440, int height = 900, double scale = 1) {
        environment.options.openScanPath = SampleDisk::keptIn(folder(), "larch");
        open(width, height);
        if (scale != 1)
            setFontScale(scale);
        EXPECT_TRUE(waitUntil([this] { return app().scan()->isForeign() && app().largeOld()->isKnown(); }));
        settle();
    }
};

} // namespace

TEST(ForeignScanInTheWindow, OffersNothingThatMovesOpensOrMeasuresIt) {
    ForeignWindow scene;
    scene.show();
    auto& app = scene.app();
    const auto statement = QStringLiteral("Measured on larch; nothing can be moved from here");
    const auto noneOf = [&](const QString& menu, const QStringList& entries) {
        for (const auto& entry : entries)
            EXPECT_FALSE(scene.isShown(menu + entry)) << entry.toStdString();
        EXPECT_TRUE(scene.isShown(menu + QStringLiteral(".copy"))) << "the path is only words";
        scene.press(Qt::Key_Escape);
    };
    const QStringList actions{QStringLiteral(".open"),     QStringLiteral(".show"),
                              QStringLiteral(".terminal"), QStringLiteral(".rescan"),
                              QStringLiteral(".exclude"),  QStringLiteral(".tick"),
                              QStringLiteral(".all"),      QStringLiteral(".none")};
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.again")));
    for (const auto* const screen : {"large", "map"}) {
        SCOPED_TRACE(screen);
        const QString name = QLatin1String(screen);
        app.setScreenName(name);
        scene.settle();
        EXPECT_TRUE(scene.says(statement));
        EXPECT_FALSE(scene.isShown(name + QStringLiteral(".measure")));
        const auto list =
            screen == std::string("map") ? QStringLiteral("map.list") : name + QStringLiteral(".table");
        for (const auto& place : {list, QStringLiteral("map.view")}) {
            if (!scene.isShown(place))
                continue;
            scene.item(place)->forceActiveFocus(Qt::TabFocusReason);
            scene.press(Qt::Key_Home);
            for (const auto& [key, with] : {std::pair{Qt::Key_Space, Qt::KeyboardModifiers()},
                                            {Qt::Key_A, Qt::ControlModifier},
                                            {Qt::Key_Delete, {}},
                                            {Qt::Key_F5, {}},
                                            {Qt::Key_F5, Qt::ShiftModifier}})
                scene.press(key, with);
            scene.press(Qt::Key_F10, Qt::ShiftModifier);
            noneOf(name + QStringLiteral(".menu"), actions);
        }
        EXPECT_EQ(app.notice()->text(), statement) << "why Del did nothing";
        app.notice()->dismiss();
    }
    EXPECT_FALSE(app.scan()->isScanning() || app.moves()->isConfirming() || app.rescan()->isRunning());
    EXPECT_EQ(app.map()->ticking()->ticks()->count() + app.largeOld()->ticks()->count(), 0);

    for (const auto* const screen : {"duplicates", "uninstall", "tidy"}) {
        app.setScreenName(QLatin1String(screen));
        scene.settle();
        EXPECT_TRUE(scene.says(QStringLiteral("This needs a folder of this computer"))) << screen;
    }
    bool isAsked = false;
    QObject::connect(&app, &AppModel::folderWanted, [&] { isAsked = true; });
    scene.click(QStringLiteral("tidy.empty.action"));
    EXPECT_TRUE(isAsked) << "the way back";
}

TEST(ForeignScanInTheWindow, IsComparedWithAFileOnly) {
    ForeignWindow scene;
    scene.show();
    bool isAsked = false;
    QObject::connect(&scene.app(), &AppModel::scanFileWanted,
                     [&](const QUrl& /*folder*/, bool toCompare) { isAsked = toCompare; });
    scene.click(QStringLiteral("overview.since"));
    keepPicture(scene, QStringLiteral("foreign-since-menu"));
    EXPECT_FALSE(scene.isShown(QStringLiteral("overview.since.1")));
    scene.click(QStringLiteral("overview.since.0"));
    EXPECT_TRUE(isAsked);
}

TEST(ForeignScanInTheWindow, LooksTheSameInEverySize) {
    struct Size {
        const char* suffix;
        int width;
        int height;
        double fontScale;
    };
    for (const auto& [suffix, width, height, fontScale] :
         {Size{"", 1440, 900, 1}, {"-800x560", 800, 560, 1}, {"-large-font", 1440, 900, 2}}) {
        ForeignWindow scene;
        scene.show(width, height, fontScale);
        for (const auto* const screen : {"overview", "map", "large", "duplicates", "uninstall", "tidy"}) {
            scene.app().setScreenName(QLatin1String(screen));
            scene.settle();
            keepPicture(scene,
                        QStringLiteral("foreign-%1%2").arg(QLatin1String(screen), QLatin1String(suffix)));
        }
    }
}

} // namespace orbel::test
