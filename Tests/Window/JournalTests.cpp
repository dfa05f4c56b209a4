#include "AppModel/JournalFlow.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/PutBackFlow.h"
#include "AppModel/TreeEdits.h"
#include "ModelScene.h"
#include "PastMoves.h"
#include "Scan/TreeScanner.h"
#include "Support/JournalScene.h"
#include "Util/ReadFile.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// The journal of a home in which sessions were moved to the Trash.
struct JournalOn : testing::Test {
    JournalOn() {
        scene.environment.home = past.home.path();
        scene.environment.dataVolumePath = past.home.path();
        scene.environment.trashFolder = past.trash;
        scene.environment.journalPath = past.journalPath;
        scene.environment.now = [] { return *parseIso8601("2026-11-21T12:00:00Z"); };
        scene.environment.scan = [](const auto& root, const auto& token, const auto& progress,
                                    const auto& exclusions) {
            return TreeScanner::scan(root, std::nullopt, token, progress, exclusions);
        };
    }

    AppModel& app() { return scene.model(); }
    JournalFlow& journal() { return *app().journal(); }
    JournalModel& list() { return *journal().list(); }
    QString said(int row, JournalModel::Role role) { return list().index(row).data(role).toString(); }
    void waitForPutBack() {
        scene.waitUntil([this] { return !app().putBack()->isRunning() && !app().treeEdits().isBusy(); });
    }

    PastMoves past;
    ModelScene scene;
};

constexpr auto lastWeek = "2026-11-14T08:30:00Z";
constexpr auto lastYear = "2025-11-02T08:30:00Z";

} // namespace

TEST_F(JournalOn, EveryItemTellsWhereItIsNow) {
    past.move("new", {"a.mkv", "b.mkv", "c.mkv", "d.mkv"}, lastWeek);
    past.skip("new", "e.mkv", lastWeek);
    past.move("old", {"z.mkv"}, lastYear);
    const QAbstractItemModelTester tester(&list(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    fs::remove(past.trashed("b.mkv"));
    past.home.file("Videos/c.mkv", "something new");
    const auto head = QStringLiteral("14 November 2026 at ");
    scene.waitUntil([this] { return list().rowCount() == 8; });
    scene.waitUntil(
        [this] { return said(0, JournalModel::RemarkRole) == QStringLiteral("2 can be put back"); });
    EXPECT_TRUE(said(0, JournalModel::TitleRole).startsWith(head));
    EXPECT_EQ(said(0, JournalModel::DetailRole), QStringLiteral("Duplicates · 4 items · 82 KB, 1 skipped"));
    EXPECT_EQ(said(0, JournalModel::ActionRole), QStringLiteral("Put Back 2 Items"));
    EXPECT_EQ(said(6, JournalModel::ActionRole), QStringLiteral("Put Back 1 Item"));
    const auto stages = [this] {
        QStringList all;
        for (int row = 1; row < 6; ++row)
            all << said(row, JournalModel::StageRole);
        return all.join(QLatin1Char(' '));
    };
    EXPECT_EQ(stages(), QStringLiteral("inTrash gone occupied inTrash skipped"));
    EXPECT_EQ(said(2, JournalModel::ReasonRole), QStringLiteral("No longer in the Trash (emptied or moved)"));
    EXPECT_EQ(said(3, JournalModel::ReasonRole),
              QStringLiteral("Something already exists at the original location"));
    EXPECT_EQ(said(5, JournalModel::ReasonRole), QStringLiteral("Changed since the scan — scan again"));
    EXPECT_EQ(said(5, JournalModel::SizeRole), QStringLiteral("—"));
    EXPECT_EQ(journal().status(), QStringLiteral("2 sessions · 6 items"));

    // What the disk says may change while nobody looks.
    fs::remove(past.video("c.mkv"));
    fs::remove_all(past.home.path("Videos"));
    journal().refresh();
    scene.waitUntil([&] {
        return stages() == QStringLiteral("inTrash gone inTrash inTrash skipped") && !list().isPossibleAt(1)
               && !list().isPossibleAt(3);
    });
    EXPECT_EQ(said(1, JournalModel::ReasonRole),
              QStringLiteral("The original folder no longer exists or moved"));
    EXPECT_EQ(said(0, JournalModel::RemarkRole), QStringLiteral("nothing can be put back now"));
}

TEST_F(JournalOn, RowsKeepTheirPlaceWhileTheirItemsComeBack) {
    past.move("new", {"a.mkv", "b.mkv"}, lastWeek);
    past.move("old", {"z.mkv"}, lastYear);
    scene.waitUntil([this] { return list().rowCount() == 5 && list().isPossibleAt(2); });
    QSignalSpy resets(&list(), &QAbstractItemModel::modelReset);
    std::vector<std::string> back;
    QObject::connect(app().moves(), &MoveFlow::restored, [&](const auto& paths) { back = paths; });

    journal().putBack(2);
    EXPECT_TRUE(app().putBack()->isRunning());
    journal().putBack(1);
    app().scan()->startScan(past.home.path());
    EXPECT_FALSE(app().scan()->isScanning()) << "a scan beside it would see half of it";
    waitForPutBack();
    EXPECT_EQ(back, std::vector{past.video("b.mkv")}) << "one at a time";
    EXPECT_EQ(app().putBack()->putBackMessage(), QStringLiteral("Put back “b.mkv” to ~/Videos"));
    EXPECT_FALSE(app().putBack()->isFailed());
    scene.waitUntil([this] { return said(2, JournalModel::StageRole) == QStringLiteral("putBack"); });
    EXPECT_TRUE(said(2, JournalModel::ReasonRole).startsWith(QStringLiteral("Put back ")));

    // Another process moves something meanwhile, and occupies a place.
    past.move("newest", {"n.mkv"}, "2026-11-20T08:30:00Z");
    past.home.file("Videos/z.mkv", "z");
    journal().refresh();
    scene.waitUntil([this] { return list().rowCount() == 7 && list().isPossibleAt(1); });
    EXPECT_EQ(resets.count(), 0);
    app().putBack()->putBackEntry(past.journal.restorable().at(1).id);
    waitForPutBack();
    EXPECT_TRUE(app().putBack()->isFailed());
    EXPECT_EQ(app().putBack()->putBackMessage(),
              QStringLiteral("“z.mkv” was not put back: Something already exists at the original location"));
}

TEST_F(JournalOn, TheLastBatchIsTheNewestThatStillCanComeBack) {
    past.move("old", {"y.mkv", "z.mkv"}, lastYear);
    past.move("new", {"a.mkv"}, lastWeek);
    fs::remove(past.trashed("a.mkv"));
    fs::remove(past.trashed("y.mkv"));
    app().putBack()->putBackLast();
    waitForPutBack();
    EXPECT_TRUE(fs::exists(past.video("z.mkv")));
    EXPECT_EQ(app().putBack()->putBackMessage(),
              QStringLiteral("Put back 1 of 2 items: “y.mkv”: No longer in the Trash (emptied or moved)"));
    app().putBack()->putBackLast();
    waitForPutBack();
    EXPECT_EQ(app().putBack()->putBackMessage(),
              QStringLiteral("“a.mkv” was not put back: No longer in the Trash (emptied or moved)"));
    EXPECT_EQ(std::ranges::count(past.journal.entries(), JournalEntry::Result::restoreFailed,
                                 &JournalEntry::result),
              0)
        << "what is gone is not recorded again and again";
}

TEST_F(JournalOn, ASearchLooksInTitlesAndPathsAndAFoldHidesItems) {
    past.move("new", {"a.mkv", "B.mkv"}, lastWeek);
    past.move("old", {"b.txt"}, lastYear);
    const QAbstractItemModelTester tester(&list(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    scene.waitUntil([this] { return list().rowCount() == 5; });
    journal().setFolded(1, true);
    EXPECT_EQ(list().rowCount(), 3);
    EXPECT_EQ(list().match(list().index(1), Qt::DisplayRole, QStringLiteral("b")).value(0).row(), 2);
    journal().setFolded(0, false);
    EXPECT_EQ(list().rowCount(), 5);
    journal().setSearch(QStringLiteral("videos/b"));
    scene.waitUntil([this] { return list().rowCount() == 4; });
    EXPECT_EQ(list().entryAt(1)->title, "B.mkv");
    EXPECT_TRUE(QTest::qWaitFor([this] { return list().isPossibleAt(1); }, 10'000));
    journal().putBack(1);
    waitForPutBack();
    EXPECT_TRUE(fs::exists(past.video("B.mkv")));
    journal().setSearch(QStringLiteral("nowhere"));
    scene.waitUntil([this] { return journal().state() == QStringLiteral("noMatch"); });
    journal().setSearch({});
    EXPECT_EQ(list().rowCount(), 5);
}

TEST_F(JournalOn, IsExportedAndSaysWhyItCannotBeRead) {
    past.move("new", {"a.mkv"}, lastWeek);
    EXPECT_EQ(journal().state(), QStringLiteral("loading"));
    scene.waitUntil([this] { return journal().state() == QStringLiteral("filled"); });
    const auto exported = [this](const char* name) {
        const auto path = past.home.path(name);
        journal().exportJournal(QUrl::fromLocalFile(QString::fromStdString(path)));
        scene.waitUntil([&] { return fs::exists(path); });
        return readFile(path).value_or("");
    };
    EXPECT_TRUE(exported("journal.md").starts_with("# "));
    EXPECT_TRUE(exported("journal.json").starts_with("["));
    journal().exportJournal(QUrl::fromLocalFile(QString::fromStdString(past.home.path("no/such/folder.md"))));
    scene.waitUntil([this] { return !app().notice()->text().isEmpty(); });

    fs::rename(scene.environment.journalPath, past.home.path("elsewhere"));
    past.home.link("journal/journal.jsonl", past.home.path("elsewhere"));
    journal().refresh();
    scene.waitUntil([this] { return journal().state() == QStringLiteral("failed"); });
    EXPECT_FALSE(journal().failure().isEmpty()) << "whoever put the link there could tell us anything";
    EXPECT_TRUE(journal().countText().isEmpty());
    fs::remove(scene.environment.journalPath);
    journal().refresh();
    scene.waitUntil([this] { return journal().state() == QStringLiteral("empty"); });
}

TEST_F(JournalOn, OfALongJournalOnlyTheNewestIsUnfolded) {
    std::vector<JournalEntry> entries;
    for (int session = 0; session < 40; ++session) {
        for (int i = 0; i < 50; ++i) {
            auto entry = trashedEntry();
            entry.sessionID = "session " + std::to_string(session);
            entry.time = parseIso8601(lastYear).value() + std::chrono::hours(session);
            entries.push_back(std::move(entry));
        }
    }
    JournalModel model;
    std::size_t asked = 0;
    model.setAsking([&](auto) { ++asked; }, [&](auto) { ++asked; });
    model.setHistory(std::make_shared<JournalHistory>(std::move(entries)), std::nullopt, "/home/ann",
                     currentDate());
    EXPECT_EQ(model.rowCount(), 40 + 4 * 50);
    EXPECT_EQ(asked, 0U) << "nothing is in sight yet";
    EXPECT_EQ(model.sessionAt(0).id, "session 39");
}

} // namespace orbel::test
