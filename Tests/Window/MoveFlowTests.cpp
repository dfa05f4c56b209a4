#include "AppModel/LatestJob.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/TreeEdits.h"
#include "HookedTrash.h"
#include "Journal/MoveRecord.h"
#include "ModelScene.h"
#include "RealHome.h"

#include <filesystem>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <memory>
#include <QSignalSpy>
#include <thread>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

/// Makes the call on the main thread and waits for its end. The thread sanitizer does not see a wait in Qt.
void callOnMainThread(const std::function<void()>& call) {
    const auto done = std::make_shared<std::promise<void>>();
    LatestJob::post([&call, done] {
        call();
        done->set_value();
    });
    done->get_future().wait();
}

/// A measured home with three films in it.
struct MoveFlowOn : testing::Test {
    MoveFlowOn() {
        useRealHome(scene.environment, home.path());
        scene.environment.dataVolumePath = home.path();
        scene.environment.journalPath = home.path("journal/journal.jsonl");
        trash = std::make_shared<HookedTrash>(scene.environment.trashFolder);
        scene.environment.trash = trash;
        for (const auto* name : {"a.mkv", "b.mkv", "c.mkv"})
            films.push_back(home.file(std::string("Videos/") + name, 20'000));
    }

    void measure() {
        app().scan()->startScan(home.path());
        scene.waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; });
        app().moves()->watch(ticks);
    }
    AppModel& app() { return scene.model(); }
    MoveFlow& moves() { return *app().moves(); }

    TickedItem ticked(const std::string& path) {
        const auto& tree = *app().scan()->tree();
        const auto node = tree.index(path, app().policy().canonicalizer()).value();
        return TickedItem::ofNode(
            DeletionItem::fromTree(tree, node, DeletionModule::map, app().policy()).value(), tree, node);
    }
    bool isInTree(const std::string& path) {
        return app().scan()->tree()->index(path, app().policy().canonicalizer()).has_value();
    }
    void review(const std::vector<std::string>& paths) {
        for (const auto& path : paths)
            ticks.setTicked(ticked(path), true);
        moves().review(&ticks);
        ASSERT_TRUE(moves().isConfirming());
    }
    void confirm() {
        moves().confirm();
        scene.waitUntil([this] { return moves().isReporting(); });
        scene.waitUntil([this] { return !app().treeEdits().isBusy(); });
    }

    TemporaryFolder home;
    std::vector<std::string> films;
    std::shared_ptr<HookedTrash> trash;
    ModelScene scene;
    Ticks ticks;
};

} // namespace

TEST_F(MoveFlowOn, WhatMovesIsWhatWasShownAndAllOfItComesBack) {
    measure();
    const auto before = app().scan()->tree();
    const int version = app().scan()->treeVersion();
    std::vector<std::string> told;
    QObject::connect(&moves(), &MoveFlow::moved, [&](const auto& paths) { told = paths; });
    review({films[0], films[1]});
    EXPECT_EQ(moves().question(), QStringLiteral("Move 2 items to the Trash?"));
    const auto request = moves().confirmRequest()->id;
    ticks.clear();
    ticks.setTicked(ticked(films[2]), true);
    confirm();

    EXPECT_FALSE(fs::exists(films[0]) || fs::exists(films[1]));
    EXPECT_TRUE(fs::exists(films[2])) << "it was ticked after the confirmation was shown";
    EXPECT_EQ(told, (std::vector{films[0], films[1]}));
    EXPECT_EQ(ticks.count(), 0);
    EXPECT_EQ(moves().report()->moved()->rowCount(), 2);
    EXPECT_EQ(moves().lastReport()->moved.size(), 2);
    EXPECT_FALSE(isInTree(films[0]) || isInTree(films[1]));
    EXPECT_EQ(app().scan()->treeVersion(), version + 1);
    EXPECT_LT(app().scan()->tree()->allocated(0), before->allocated(0));
    EXPECT_TRUE(before->index(films[0], app().policy().canonicalizer())) << "what others hold never changes";
    scene.waitUntil([this] { return app().journal()->journalEntries().size() == 2; });

    moves().putBackAll();
    scene.waitUntil([this] { return !moves().isPuttingBack() && !app().treeEdits().isBusy(); });
    EXPECT_TRUE(fs::exists(films[0]) && fs::exists(films[1]));
    EXPECT_EQ(moves().report()->headline(), QStringLiteral("Put back 2 items."));
    EXPECT_EQ(moves().report()->movedTitle(), QStringLiteral("Put back (2)"));
    EXPECT_FALSE(moves().report()->canPutBack());
    EXPECT_EQ(app().scan()->tree()->allocated(0), before->allocated(0));
    EXPECT_TRUE(isInTree(films[0]));

    review({films[0]});
    EXPECT_NE(moves().confirmRequest()->id, request);
    moves().cancel();
    EXPECT_FALSE(moves().isConfirming());
    EXPECT_TRUE(fs::exists(films[0]));
}

TEST_F(MoveFlowOn, WhatChangedMeanwhileIsSkippedWithItsReason) {
    measure();
    review({films[0], films[1]});
    home.file("Videos/a.mkv", "another film");
    confirm();
    EXPECT_TRUE(fs::exists(films[0]));
    EXPECT_FALSE(fs::exists(films[1]));
    const auto* skipped = moves().report()->skipped();
    ASSERT_EQ(skipped->rowCount(), 1);
    EXPECT_EQ(skipped->rows().front().note, QStringLiteral("Changed since the scan — scan again"));
    EXPECT_TRUE(isInTree(films[0]));
}

TEST_F(MoveFlowOn, NothingMovesWithoutAJournal) {
    home.folder("journal/journal.jsonl");
    measure();
    review({films[0], films[1]});
    confirm();
    EXPECT_TRUE(fs::exists(films[0]) && fs::exists(films[1]));
    EXPECT_TRUE(moves().report()->isUntrustworthy());
    EXPECT_EQ(moves().report()->stops(),
              (QStringList{QStringLiteral("Stopped: the journal could not be written."),
                           QStringLiteral("Journal: %1: is not a regular file")
                               .arg(QString::fromStdString(home.path("journal/journal.jsonl")))}));
}

TEST_F(MoveFlowOn, AConfirmationCountsEachItemOnce) {
    measure();
    moves().ask({ticked(films[0]), ticked(films[1]), ticked(films[0])});
    EXPECT_EQ(moves().question(), QStringLiteral("Move 2 items to the Trash?"));
}

TEST_F(MoveFlowOn, StoppingFinishesTheItemInProgressAndTakesNoOther) {
    measure();
    bool startedScan = true;
    trash->beforeMoving = [&](const std::string&) {
        callOnMainThread([&] {
            app().scan()->measureAgain();
            startedScan = app().scan()->isScanning();
            moves().stopAfterThisItem();
        });
    };
    review(films);
    confirm();
    EXPECT_EQ(moves().report()->moved()->rowCount(), 1);
    EXPECT_EQ(std::ranges::count_if(films, [](const auto& film) { return fs::exists(film); }), 2);
    EXPECT_EQ(moves().report()->stops(), QStringList{QStringLiteral("Cancelled before all items ran.")});
    EXPECT_FALSE(startedScan) << "a scan beside a batch would see half of it";
}

TEST_F(MoveFlowOn, EachItemTellsWhatBecameOfItWhileTheOthersMove) {
    measure();
    QStringList seen;
    trash->beforeMoving = [&](const std::string& path) {
        if (path == films[0]) // then it is told without waiting for the others
            std::this_thread::sleep_for(MoveRecord::longestUnrecorded);
        if (path != films[2])
            return;
        callOnMainThread([&] {
            for (const auto& row : moves().items()->rows())
                seen << row.stage();
            seen << moves().progressText() << moves().deletingTitle();
        });
    };
    review(films);
    home.file("Videos/b.mkv", "another film");
    confirm();
    EXPECT_EQ(seen,
              (QStringList{QStringLiteral("moved"), QStringLiteral("skipped"), QStringLiteral("checking"),
                           QStringLiteral("Moving to the Trash: 3 of 3"), QStringLiteral("c.mkv")}));
}

TEST_F(MoveFlowOn, TheReportIsExportedInTheFormThatTheFileIsNamedFor) {
    measure();
    review({films[0]});
    confirm();
    const auto exported = [this](const char* name) {
        moves().exportReport(QUrl::fromLocalFile(QString::fromStdString(home.path(name))));
        QFile file(QString::fromStdString(home.path(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    EXPECT_TRUE(exported("report.md").startsWith("# "));
    EXPECT_TRUE(exported("report.json").startsWith("{"));
    moves().exportReport(QUrl::fromLocalFile(QString::fromStdString(home.path("no/such/folder.md"))));
    EXPECT_FALSE(app().notice()->text().isEmpty());
}

TEST_F(MoveFlowOn, ANewScanEndsAConfirmationAndMakesEditsOfTheOldTreeVoid) {
    measure();
    const auto old = app().scan()->tree();
    review({films[0]});
    app().scan()->measureAgain();
    EXPECT_FALSE(moves().isConfirming());
    EXPECT_EQ(ticks.count(), 0);
    moves().confirm();
    EXPECT_FALSE(moves().isDeleting());
    scene.waitUntil([this] { return app().scan()->scanState() == ScanFlow::ScanState::done; });

    const auto now = app().scan()->tree();
    ScanResult edited;
    edited.tree = *old;
    app().scan()->takeEdit(old, scanOutcome(std::move(edited), app().disk()->reader(), home.path()));
    EXPECT_EQ(app().scan()->tree(), now);
}

TEST_F(MoveFlowOn, TicksRefuseNestAndTellWhatTheyFree) {
    home.hardLink("Videos/again.mkv", "Videos/a.mkv");
    measure();
    ticks.setTicked(ticked(films[1]), true);
    EXPECT_EQ(ticks.frees(), QStringLiteral("Frees 20 KB"));
    const auto folder = home.path("Videos");
    auto all = ticked(folder);
    all.item.blockedReason.reset();
    ASSERT_TRUE(ticks.setTicked(all, true));
    EXPECT_EQ(ticks.count(), 1) << "the folder stands for what was ticked in it";
    EXPECT_EQ(ticks.frees(), QStringLiteral("Frees 61 KB")) << "both names of a.mkv are in it";
    EXPECT_FALSE(ticks.setTicked(ticked(films[1]), true));
    ticks.clear();

    auto refused = ticked(films[2]);
    refused.item.blockedReason = "No";
    EXPECT_FALSE(ticks.setTicked(refused, true));
    ticks.tickAll({ticked(films[0]), ticked(home.path("Videos/again.mkv")), ticked(films[1])});
    EXPECT_EQ(ticks.frees(), QStringLiteral("Frees 20 KB – 41 KB")) << "neither name alone frees the file";
    EXPECT_TRUE(ticks.anyInside(folder));
    EXPECT_EQ(ticks.covering(folder), nullptr);
    auto partlyRead = ticked(films[1]);
    partlyRead.item.note = "1 entry in it could not be read";
    EXPECT_EQ(sumsOf({ticked(films[0]), partlyRead}).freesText(), QStringLiteral("Frees at least 20 KB"));
    EXPECT_EQ(TickedItem::alone(partlyRead.item, ContentKind::folder).leastFreed, 20'480);
    ticks.setFilter([&](const TickedItem& item) { return item.item.path == films[1]; });
    EXPECT_EQ(ticks.remark(), QStringLiteral("2 of 3 hidden by filters"));
    ticks.setPosition([&](const TickedItem& item) { return item.item.path == films[1] ? 0U : 1U; });
    EXPECT_EQ(ticks.items().front().item.path, films[1]);
    EXPECT_EQ(ticks.reviewText(), QStringLiteral("Review 3 Items…"));
}

} // namespace orbel::test
