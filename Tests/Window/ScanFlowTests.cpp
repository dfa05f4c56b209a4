#include "AppModel/TreeEdits.h"
#include "ModelScene.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace orbel::test {
namespace {

using State = ScanFlow::ScanState;

TEST(ScanFlow, PublishesWhatAScanFinds) {
    ModelScene scene;
    auto& model = scene.model();
    EXPECT_EQ(model.scan()->scopeText(), QStringLiteral("This disk · not measured yet"));
    const int before = model.scan()->treeVersion();
    model.scan()->scanDisk();
    EXPECT_EQ(model.scan()->scanState(), State::scanning);
    EXPECT_EQ(model.scan()->tree()->count(), 0) << "no tree while a scan runs";
    scene.scan(0).progress({.entries = 3,
                            .bytes = 120,
                            .unreadable = 0,
                            .elapsed = 0.5,
                            .topLevel = {{.name = "films", .bytes = 120, .isFolder = true}}});
    scene.waitUntil([&] { return model.scan()->progress().has_value(); });
    EXPECT_EQ(model.scan()->measuredText(), QStringLiteral("120 B · 3 entries · 0.5 s"));
    EXPECT_EQ(model.scan()->topLevel()->rows().front().path, QStringLiteral("/data/films"));

    scene.endScan(0, sampleScan());
    scene.waitUntil([&] { return model.scan()->scanState() == State::done; });
    EXPECT_EQ(model.scan()->treeVersion(), before + 2);
    EXPECT_EQ(model.scan()->measuredText(), QStringLiteral("Measured 170 B · 6 entries · 8.4 s"));
    EXPECT_EQ(model.scan()->coverage(), (Coverage(600, *model.scan()->tree())));
    EXPECT_EQ(model.scan()->unreadable()->headline(), QStringLiteral("1 entry could not be read"));
    EXPECT_EQ(model.scan()->unreadable()->entries()->rows().front().command,
              QStringLiteral("sudo orbel --scan-json '/data/it'\\''s closed'"));
    EXPECT_EQ(model.scan()->largestFolders()->rows().front().path, QStringLiteral("/data/films"));
    EXPECT_EQ(model.scan()->largestFolders()->rows().front().kind, static_cast<int>(FileKind::video));
}

TEST(ScanFlow, IgnoresASecondStartAndReplacesTheTreeLater) {
    ModelScene scene;
    auto& model = scene.model();
    model.scan()->startScan("/data");
    model.scan()->startScan("/other");
    EXPECT_EQ(model.scan()->scanRoot(), "/data");
    scene.scan(0);
    scene.endScan(0, sampleScan());
    scene.waitUntil([&] { return !model.scan()->isScanning(); });
    const auto first = model.scan()->tree();
    scene.scanWith("/elsewhere", sampleScan());
    EXPECT_EQ(scene.scan(1).root, "/elsewhere");
    EXPECT_NE(model.scan()->tree(), first);
    EXPECT_FALSE(model.scan()->coverage()) << "only of a whole disk";
}

TEST(ScanFlow, DropsWhatComesFromAnEarlierScan) {
    ModelScene scene;
    auto& model = scene.model();
    scene.scanWith("/data", sampleScan());
    const auto late = scene.scan(0).progress;
    model.scan()->startScan("/data");
    const auto current = scene.scan(1).progress;
    late({.entries = 9999, .bytes = 0, .unreadable = 0, .elapsed = 0, .topLevel = {}});
    current({.entries = 2, .bytes = 0, .unreadable = 0, .elapsed = 0, .topLevel = {}});
    scene.waitUntil([&] { return model.scan()->progress().has_value(); });
    EXPECT_EQ(model.scan()->progress()->entries, 2);
    model.scan()->stop();
    scene.waitUntil([&] { return !model.scan()->isScanning(); });
    current({.entries = 7, .bytes = 0, .unreadable = 0, .elapsed = 0, .topLevel = {}});
    QTest::qWait(20);
    EXPECT_EQ(model.scan()->progress()->entries, 2) << "a scan that is over reports no more";
}

TEST(ScanFlow, StopsAndKeepsWhatWasFound) {
    ModelScene scene;
    auto& model = scene.model();
    model.scan()->startScan("/data");
    scene.scan(0);
    model.scan()->stop();
    EXPECT_TRUE(model.scan()->isStopping());
    scene.waitUntil([&] { return model.scan()->scanState() == State::cancelled; });
    EXPECT_TRUE(model.scan()->isPartial());
    EXPECT_TRUE(model.scan()->hasTree());
    EXPECT_EQ(model.scan()->measuredText(), QStringLiteral("Partial · measured 170 B · 6 entries · 8.4 s"));
    scene.scanWith("/data", sampleScan());
    EXPECT_FALSE(model.scan()->isPartial());
}

TEST(ScanFlow, WaitsForFullDiskAccessAndThenStartsTheScanOfTheCommandLine) {
    ModelScene scene;
    scene.world()->permission = false;
    scene.environment.options.scanPath = "/asked";
    auto& model = scene.model();
    EXPECT_TRUE(model.scan()->needsFullDiskAccess());
    model.scan()->startScan("/data");
    EXPECT_EQ(model.scan()->scanState(), State::idle);
    scene.world()->permission = std::nullopt; // cannot be told, which must not lock anybody out
    model.scan()->refreshFullDiskAccess();
    EXPECT_FALSE(model.scan()->needsFullDiskAccess());
    EXPECT_EQ(scene.scan(0).root, "/asked");
    model.scan()->stop();
}

TEST(ScanFlow, SaysSoWhenTheRootCannotBeRead) {
    ModelScene scene;
    ScanResult nothing;
    nothing.tree = FileTree("/gone");
    scene.scanWith("/gone", std::move(nothing));
    EXPECT_TRUE(scene.model().scan()->isRootUnreadable());
    EXPECT_FALSE(scene.model().scan()->hasTree());
}

TEST(ScanFlow, EndsWithTheModel) {
    auto scene = std::make_unique<ModelScene>();
    scene->model().scan()->startScan("/data");
    const auto progress = scene->scan(0).progress;
    scene.reset();
    progress({}); // to nobody
    QTest::qWait(20);
}

TEST(ScanFlow, LedgerAddsUpOnEveryVolume) {
    ModelScene scene;
    scene.scanWith("/data", sampleScan());
    auto& ledger = *scene.model().disk()->ledger();
    EXPECT_EQ(ledger.measured().bytes() + ledger.notMeasured().bytes() + ledger.reserved().bytes()
                  + ledger.free().bytes(),
              ledger.total().bytes());
    EXPECT_EQ(ledger.summary(), QStringLiteral("Measured 170 B, not measured 430 B, reserved 100 B, "
                                               "free 300 B, total 1 KB"));
    double whole = 0;
    for (const auto& segment : ledger.segments()->rows())
        whole += segment.fraction;
    EXPECT_DOUBLE_EQ(whole, 1);

    // Files that share blocks can add up to more than is used.
    scene.world()->volume =
        VolumeInfo{.total = 1000, .free = 900, .used = 100, .availableForImportantUsage = 900};
    scene.scanWith("/data", sampleScan());
    EXPECT_EQ(ledger.shared().bytes(), 70);
    EXPECT_EQ(ledger.notMeasured().bytes(), 0);
}

TEST(ScanFlow, LedgerNamesWhatChangedSinceTheScan) {
    ModelScene scene;
    scene.environment.trashFolder = "/data/Trash";
    scene.world()->trash = 40;
    auto& model = scene.model();
    const auto& ledger = *model.disk()->ledger();
    TreeBuilder builder("/data");
    builder.file(0, "a.mkv", 100);
    builder.file(0, "b.mkv", 50);
    builder.file(builder.folder(builder.folder(0, "Trash"), "files"), "old.mkv", 40);
    ScanResult result;
    result.tree = builder.build();
    scene.scanWith("/data", std::move(result));

    const auto expect = [&](quint64 measured, quint64 trash, quint64 written, quint64 freed) {
        scene.waitUntil([&] {
            return ledger.trash().bytes() == trash && ledger.used().bytes() == scene.world()->volume->used;
        });
        EXPECT_EQ(ledger.measured().bytes(), measured);
        EXPECT_EQ(ledger.notMeasured().bytes(), 410) << "what no file shows stays what it was";
        EXPECT_EQ(ledger.shared().bytes(), 0);
        EXPECT_EQ(ledger.writtenSince().bytes(), written);
        EXPECT_EQ(ledger.freedSince().bytes(), freed);
        EXPECT_EQ(measured + trash + 410 + written - freed + ledger.reserved().bytes()
                      + ledger.free().bytes(),
                  ledger.total().bytes());
    };
    const auto setUsed = [&](std::uint64_t used) {
        scene.world()->volume = VolumeInfo{
            .total = 1000, .free = 900 - used, .used = used, .availableForImportantUsage = 900 - used};
    };
    expect(150, 40, 0, 0);
    EXPECT_EQ(model.scan()->coverage()->notMeasured(), 410);

    scene.world()->trash = 90; // b.mkv was moved
    model.treeEdits().remove({"/data/b.mkv"});
    expect(100, 90, 0, 0);
    EXPECT_EQ(model.scan()->coverage()->notMeasured(), 410) << "on the map too";
    EXPECT_TRUE(ledger.summary().startsWith(
        QStringLiteral("Measured 100 B, in the Trash 90 B, not measured 410 B, reserved")));

    scene.world()->trash = 0; // emptied elsewhere
    setUsed(510);
    model.disk()->refreshVolume();
    expect(100, 0, 0, 0);
    setUsed(810);
    model.disk()->refreshVolume();
    expect(100, 0, 300, 0);
    setUsed(200);
    model.disk()->refreshVolume();
    expect(100, 0, 0, 310);

    setUsed(640); // 130 more in a folder that is measured again
    TreeBuilder again("/data/Trash");
    again.file(again.folder(0, "files"), "new.mkv", 0);
    again.file(0, "written.mkv", 130);
    model.treeEdits().splice("/data/Trash", std::make_shared<FileTree>(again.build()));
    scene.waitUntil([&] { return ledger.measured().bytes() == 230; });
    expect(230, 0, 0, 0);
}

TEST(ScanFlow, TheTrashIsMeasuredWhenItChanges) {
    const TemporaryFolder home;
    ModelScene scene;
    scene.environment.trashFolder = home.path("share/Trash");
    home.folder("share");
    auto& model = scene.model();
    scene.waitUntil([&] { return model.disk()->ledger()->isKnown(); });
    scene.world()->trash = 7;
    home.file("share/Trash/files/first");
    scene.waitUntil([&] { return model.disk()->trashBytes() == 7; });
    scene.world()->trash = 8;
    home.file("share/Trash/files/second");
    scene.waitUntil([&] { return model.disk()->trashBytes() == 8; });
}

TEST(ListModels, KeepTheirPromisesToViews) {
    ModelScene scene;
    auto& model = scene.model();
    std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
    for (QAbstractItemModel* list : {static_cast<QAbstractItemModel*>(model.scan()->topLevel()),
                                     static_cast<QAbstractItemModel*>(model.scan()->kinds()),
                                     static_cast<QAbstractItemModel*>(model.scan()->unreadable()->entries()),
                                     static_cast<QAbstractItemModel*>(model.disk()->volumes()),
                                     static_cast<QAbstractItemModel*>(model.scan()->largestFolders()),
                                     static_cast<QAbstractItemModel*>(model.disk()->ledger()->segments())})
        testers.push_back(std::make_unique<QAbstractItemModelTester>(
            list, QAbstractItemModelTester::FailureReportingMode::Fatal));
    model.disk()->volumes()->setVolumes(
        {{.path = "/", .fileSystem = "ext4", .source = "/dev/sda1", .info = *scene.world()->volume}});
    EXPECT_EQ(model.disk()->volumes()->rows().front().figures(), QStringLiteral("300 B free of 1 KB"));
    scene.scanWith("/data", sampleScan());
    scene.scanWith("/data", sampleScan(true));
    EXPECT_EQ(model.scan()->kinds()->rows().front().title, QStringLiteral("Video"));
    EXPECT_EQ(model.scan()->kinds()->rowCount(), 2);
}

TEST(TopLevelModel, RowsChangePlacesAtMostOnceASecond) {
    TopLevelModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy moves(&model, &TopLevelModel::rowsMoved);
    const auto names = [&] {
        QStringList all;
        for (const auto& row : model.rows())
            all << row.path;
        return all.join(QLatin1Char(' '));
    };
    model.begin(QStringLiteral("~"));
    model.update({{"a", 30, true}, {"b", 20, true}, {"c", 10, false}}, 0.25);
    model.update({{"b", 60, true}, {"a", 30, true}, {"d", 25, true}, {"c", 10, false}}, 0.5);
    EXPECT_EQ(names(), QStringLiteral("~/a ~/b ~/c"));
    EXPECT_EQ(model.rows()[1].entry.bytes, 60) << "figures go on";
    EXPECT_EQ(model.rows()[0].fraction, 0.5);
    model.update({{"b", 70, true}, {"d", 40, true}, {"a", 30, true}}, 1.25);
    EXPECT_EQ(names(), QStringLiteral("~/b ~/d ~/a"));
    EXPECT_EQ(moves.count(), 1);
}

TEST(ScanOutcome, TellsFoldersThatSayWhereTheSpaceWent) {
    TreeBuilder builder("/");
    const auto user = builder.folder(builder.folder(0, "home"), "mira");
    builder.file(builder.folder(user, "Videos"), "a.mkv", 500);
    builder.file(builder.folder(user, "Pictures"), "b.png", 400);
    const auto system = builder.folder(0, "usr");
    for (int i = 0; i < 30; ++i)
        builder.file(builder.folder(system, "part" + std::to_string(i)), "file", 10);
    const auto tree = builder.build();
    std::vector<std::string> told;
    for (const auto node : tellingFolders(tree, 10))
        told.push_back(tree.walkedPath(node));
    EXPECT_EQ(told, (std::vector<std::string>{"/home/mira/Videos", "/home/mira/Pictures", "/usr"}))
        << "a home says less than what is in it; a folder of many small ones says more than they do";
}

} // namespace
} // namespace orbel::test
