#include "Delete/DeletionSession.h"
#include "Delete/Trasher.h"
#include "Journal/IntentSettling.h"
#include "Journal/MoveRecord.h"
#include "Journal/PutBack.h"
#include "Support/ChildProcess.h"
#include "Support/Faults.h"
#include "Support/MoverHome.h"
#include "Support/Policies.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

#include <unistd.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::MoverHome;
using test::skipReason;

std::vector<std::string> titles(const auto& things) {
    std::vector<std::string> names;
    for (const auto& thing : things)
        names.push_back(thing.title);
    return names;
}

using Names = std::vector<std::string>;

/// Is told the place of each item that begins.
Trasher::Progress onBegin(std::function<void(std::size_t)> call) {
    return [call = std::move(call)](std::size_t index, const DeletionItem&, Trasher::Step step) {
        if (step == Trasher::Step::begun)
            call(index);
    };
}

TEST(Trasher, MovesInOrderAndRecordsAllThatPutsAnItemBack) {
    MoverHome home;
    home.file("docs/folder/inside", 5000);
    home.file("docs/file", 100);
    auto folder = home.item("docs/folder");
    folder.note = "May share storage; moving it may free less";
    const auto file = home.item("docs/file", DeletionModule::largeOld);

    const auto report = home.run({folder, file});

    EXPECT_EQ(report.sessionID, "session");
    EXPECT_EQ(report.startedAt, home.now);
    EXPECT_EQ(report.finishedAt, home.now);
    ASSERT_EQ(titles(report.moved), (Names{"folder", "file"}));
    EXPECT_EQ(report.moved[0].path, folder.path);
    EXPECT_EQ(report.moved[0].note, folder.note);
    EXPECT_TRUE(report.skipped.empty());
    EXPECT_FALSE(report.cancelled || report.stoppedForMismatch || report.journalFailed);
    EXPECT_EQ(home.contents(), (Names{"files/file", "files/folder"}));

    const auto lines = home.entries();
    ASSERT_EQ(lines.size(), 2);
    const auto& line = lines[0];
    EXPECT_EQ(line.result, JournalEntry::Result::trashed);
    EXPECT_EQ(line.sessionID, "session");
    EXPECT_EQ(line.time, home.now);
    EXPECT_EQ(line.module, DeletionModule::map);
    EXPECT_EQ(line.title, "folder");
    EXPECT_EQ(line.originalPath, folder.path);
    EXPECT_EQ(line.originalParentRealPath, home.path("docs"));
    EXPECT_EQ(line.approvedRealPath, folder.path);
    EXPECT_EQ(line.root, AllowedRoot::homeItem);
    EXPECT_EQ(line.bytes, report.moved[0].bytes);
    EXPECT_GE(line.bytes, 5000);
    EXPECT_EQ(line.mode, "trash");
    EXPECT_EQ(line.trashPath, home.trashed("folder"));
    EXPECT_EQ(line.trashedIdentity, TrashedIdentity::of(home.trashed("folder")));
    EXPECT_EQ(line.note, folder.note);
    EXPECT_EQ(line.reason, std::nullopt);
    EXPECT_EQ(lines[1].module, DeletionModule::largeOld);
    EXPECT_NE(lines[1].id, line.id);
    EXPECT_TRUE(home.intentFiles().empty()) << "each has its line";
}

TEST(Trasher, SkipsWhatIsDoubtfulAndGoesOn) {
    MoverHome home;
    std::vector<DeletionItem> items;
    Names reasons;
    const auto expectSkip = [&](DeletionItem item, std::string reason) {
        items.push_back(std::move(item));
        reasons.push_back(std::move(reason));
    };
    for (const auto* name :
         {"a/blocked", "a/kept-changed", "a/kept-gone", "a/changed", "a/gone", "a/good", "a/swapped"})
        home.file(name, 10);

    auto blocked = home.item("a/blocked");
    blocked.blockedReason = "Not today";
    expectSkip(blocked, "Not today");

    auto duplicate = home.item("a/kept-changed", DeletionModule::duplicates);
    duplicate.keep = {.path = home.file("a/copy", 10), .stamp = *FileStamp::of(home.path("a/copy"))};
    auto orphan = home.item("a/kept-gone", DeletionModule::duplicates);
    orphan.keep = {.path = home.path("a/no-copy"), .stamp = duplicate.keep->stamp};
    home.file("a/copy", 11);
    expectSkip(duplicate, "The copy you are keeping changed or is gone");
    expectSkip(orphan, "The copy you are keeping changed or is gone");

    home.file("a/holds/My.photoslibrary/x");
    expectSkip(home.item("a/holds"), "Contains protected data: " + home.path("a/holds/My.photoslibrary"));

    home.folder("a/subvolume");
    home.trasher.measure = [&home](const std::string& path) {
        auto measured = TreeScanner::measure(path);
        if (path == home.path("a/subvolume"))
            measured.otherVolumeInside = home.path("a/subvolume/nested");
        return measured;
    };
    expectSkip(home.item("a/subvolume"), "Contains another volume: ~/a/subvolume/nested");

    home.folder("a/empty");
    const auto empty = home.item("a/empty", DeletionModule::emptyFolders);
    home.file("a/empty/new");
    expectSkip(empty, "No longer empty: scan again");

    home.folder("a/deps/fork");
    const auto dependencies = home.item("a/deps", DeletionModule::rebuildable);
    home.folder("a/deps/fork/.git");
    expectSkip(dependencies, "Holds a version-control folder: ~/a/deps/fork/.git");

    const auto changed = home.item("a/changed");
    home.file("a/changed", 20);
    expectSkip(changed, "Changed since the scan — scan again");
    const auto gone = home.item("a/gone");
    fs::remove(gone.path);
    expectSkip(gone, "Already gone");
    home.link("a/link", home.path("a/good"));
    expectSkip(home.item("a/link"), "Is a symbolic link; links are never followed for deletion");
    home.file("loose", 10);
    expectSkip(home.item("loose"), "Too close to the home folder");
    home.file("a/bad\xFF", 10);
    expectSkip(home.item("a/bad\xFF"), "Its name is not valid text, so it could not be put back");

    // What takes the item's place after the checks stays where it is as well.
    const auto swapped = home.item("a/swapped");
    home.fakeTrash->beforeAsking = [&](const std::string& path) {
        if (path == swapped.path) {
            fs::rename(path, home.path("a/aside"));
            home.file("a/swapped", 10);
        }
    };
    expectSkip(swapped, "Changed since the scan — scan again");
    items.push_back(home.item("a/good"));

    const auto report = home.run(items);
    ASSERT_EQ(report.skipped.size(), reasons.size());
    const auto lines = home.entries();
    ASSERT_EQ(lines.size(), items.size());
    for (std::size_t i = 0; i < reasons.size(); ++i) {
        SCOPED_TRACE(items[i].path);
        EXPECT_EQ(report.skipped[i].reason, reasons[i]);
        EXPECT_EQ(report.skipped[i].path, items[i].path);
        EXPECT_EQ(lines[i].result, JournalEntry::Result::skipped);
        EXPECT_EQ(lines[i].reason, reasons[i]);
        EXPECT_EQ(lines[i].trashPath, std::nullopt);
        EXPECT_EQ(fs::exists(fs::symlink_status(items[i].path)), items[i].path != gone.path);
    }
    EXPECT_EQ(titles(report.moved), (Names{"good"}));
    EXPECT_EQ(home.contents(), (Names{"files/good"}));
    EXPECT_TRUE(home.intentFiles().empty());
}

TEST(Trasher, AnEmptyFolderThatCannotBeReadIsNoLongerEmpty) {
    MoverHome home;
    home.folder("a/empty");
    const auto item = home.item("a/empty", DeletionModule::emptyFolders);
    TreeScanner::Measurement measured{.isEmptyFolder = true};
    home.trasher.measure = [&](const std::string&) { return measured; };
    measured.unreadable = 1;
    EXPECT_EQ(skipReason(home.run({item})), "No longer empty: scan again");
    measured.unreadable = 0;
    EXPECT_EQ(home.run({item}).moved.size(), 1);
}

TEST(Trasher, AFailedMoveIsSkippedWithItsWords) {
    MoverHome home;
    const auto items = home.files({"a/one"});
    home.fakeTrash->failure = "Disk on fire";
    EXPECT_EQ(skipReason(home.run(items)), "Could not move to the Trash: Disk on fire");
    EXPECT_TRUE(fs::exists(items[0].path));
    EXPECT_TRUE(home.intentFiles().empty()) << "it is known to lie at its place";
}

TEST(Trasher, AnItemWhosePlanBecameVoidComesWithTheNextGroup) {
    MoverHome home;
    const auto items = home.files({"a/one", "a/two"});
    std::vector<std::size_t> begun;
    const auto progress = onBegin([&](std::size_t index) { begun.push_back(index); });
    home.fakeTrash->voidPlans = 1;
    const auto report = home.trasher.run(items, "session", progress, nullptr);
    EXPECT_EQ(titles(report.moved), (Names{"two", "one"}));
    EXPECT_TRUE(report.skipped.empty());
    EXPECT_EQ(begun, (std::vector<std::size_t>{0, 1, 0}));
    EXPECT_EQ(titles(home.entries()), titles(report.moved));
    EXPECT_TRUE(home.intentFiles().empty());

    home.fakeTrash->voidPlans = 1'000'000;
    EXPECT_EQ(skipReason(home.run(home.files({"b/never"}))),
              "Could not move to the Trash: Its name was taken");
}

TEST(Trasher, TellsHardLinksAtTheMoment) {
    MoverHome home;
    home.file("a/linked", 10);
    home.file("a/single", 10);
    auto single = home.item("a/single");
    single.note = "Frees nothing while other links exist";
    home.hardLink("b/other", "a/linked");
    auto linked = home.item("a/linked");
    linked.note = "May share storage; moving it may free less";
    home.folder("a/folder/inside");
    const auto report = home.run({linked, single, home.item("a/folder")});
    ASSERT_EQ(report.moved.size(), 3);
    EXPECT_EQ(report.moved[0].note, "Frees nothing while other links exist");
    EXPECT_EQ(report.moved[1].note, single.note) << "the item's own, whatever it says";
    EXPECT_EQ(report.moved[2].note, std::nullopt) << "a folder's links are its subfolders";
}

TEST(Trasher, TellsWhatCouldNotBeReadAtTheMoment) {
    MoverHome home;
    TreeScanner::Measurement measured{.unreadable = 2};
    home.trasher.measure = [&](const std::string&) { return measured; };
    home.folder("a/folder");
    auto folder = home.item("a/folder");
    folder.note = "The whole folder goes with it · 7 entries in it could not be read";
    EXPECT_EQ(home.run({folder}).moved.at(0).note,
              "The whole folder goes with it · 2 entries in it could not be read");
    EXPECT_EQ(home.entries().back().note,
              "The whole folder goes with it · 2 entries in it could not be read");

    measured.unreadable = 0;
    home.folder("b/folder");
    folder = home.item("b/folder");
    folder.note = "1 entry in it could not be read";
    EXPECT_EQ(home.run({folder}).moved.at(0).note, std::nullopt);
}

TEST(Trasher, AsksAnewWhoUsesWhatAfterTenSeconds) {
    MoverHome home;
    home.inUse.uncheckedProcesses = 3;
    const auto items = home.files({"a/1", "a/2", "a/3", "a/4", "a/5"});
    using std::chrono::milliseconds;
    std::vector<milliseconds> waits{milliseconds(0), milliseconds(10'000), milliseconds(1),
                                    milliseconds(-60'000), milliseconds(0)};
    std::vector<int> snapshots;
    std::size_t next = 0;
    home.fakeTrash->beforeMoving = [&](const std::string&) { snapshots.push_back(home.snapshots); };
    const auto report =
        home.trasher.run(items, "session", onBegin([&](std::size_t) { home.now += waits[next++]; }), nullptr);
    EXPECT_EQ(report.moved.size(), 5);
    EXPECT_EQ(snapshots, (std::vector{1, 1, 2, 3, 3})) << "a clock set back makes no snapshot younger";
    EXPECT_EQ(report.uncheckedProcesses, 3);
}

TEST(Trasher, LeavesWhatAProcessUses) {
    MoverHome home;
    const auto items = home.files({"a/used", "a/free"});
    home.trasher.inUse = [&](const std::string& path, const FileStamp&, const MappedFilesSnapshot&) {
        InUseReport report;
        report.uncheckedProcesses = path == items[0].path ? 7 : 2;
        if (path == items[0].path) {
            report.users = {{.pid = 1, .name = "editor"}};
            report.reason = "In use by editor";
        }
        return report;
    };
    const auto report = home.run(items);
    EXPECT_EQ(skipReason(report), "In use by editor");
    EXPECT_EQ(titles(report.moved), (Names{"free"}));
    EXPECT_EQ(report.uncheckedProcesses, 2) << "of the checks that came out free";
}

TEST(Trasher, StopsBeforeAnythingMovesWithoutAJournal) {
    for (const bool isIntentTheProblem : {false, true}) {
        MoverHome home;
        const auto items = home.files({"a/one", "a/two"});
        if (isIntentTheProblem)
            home.file(".local/share/Ostrevo Orbel/intents", "not a folder");
        else
            home.breakJournal();
        const auto report = home.run(items);
        EXPECT_EQ(skipReason(report), "Could not write the journal, so nothing was moved");
        EXPECT_TRUE(report.journalFailed);
        EXPECT_EQ(report.journalFailure,
                  isIntentTheProblem ? home.path(".local/share/Ostrevo Orbel/intents: Not a directory")
                                     : home.journal->path() + ": is not a regular file");
        EXPECT_EQ(titles(home.entries()), isIntentTheProblem ? Names{"one"} : Names{})
            << "recorded where the journal itself can be written";
        EXPECT_TRUE(report.moved.empty());
        EXPECT_TRUE(home.contents().empty());
        EXPECT_EQ(home.fakeTrash->asked.size(), isIntentTheProblem ? 2 : 0) << "nothing is planned in vain";
    }
}

TEST(Trasher, AMoveWithoutItsLineStandsInBothListsAndIsSettledLater) {
    MoverHome home;
    const auto items = home.files({"a/one", "a/two", "a/three"});
    home.fakeTrash->afterMoving = [&](const std::string& trashPath) {
        if (trashPath.ends_with("two"))
            home.breakJournal();
    };
    const auto report = home.run(items);
    EXPECT_EQ(titles(report.moved), (Names{"one", "two", "three"}));
    EXPECT_EQ(titles(report.skipped), titles(report.moved)) << "they were to be recorded together";
    EXPECT_EQ(
        report.skipped[0].reason,
        "Moved to the Trash, but the journal could not be written. Put it back from the Trash in the file "
        "manager.");
    EXPECT_TRUE(report.journalFailed);
    EXPECT_EQ(report.journalFailure, home.journal->path() + ": is not a regular file");
    EXPECT_EQ(home.intentFiles().size(), 1);

    home.mendJournal();
    EXPECT_TRUE(home.entries().empty());
    const auto settled = settleIntents(*home.journal);
    EXPECT_EQ(titles(settled.recorded), titles(report.moved));
    EXPECT_EQ(titles(home.journal->restorable()), titles(report.moved));
    EXPECT_TRUE(home.intentFiles().empty());
}

TEST(Trasher, AMoveThatTheDiskDidNotConfirmIsNotRecorded) {
    MoverHome home;
    const auto items = home.files({"a/one", "a/two"});
    home.fakeTrash->flushError = EIO;
    const auto report = home.run(items);
    EXPECT_EQ(titles(report.moved), (Names{"one", "two"}));
    EXPECT_EQ(titles(report.skipped), (Names{"one", "two"}));
    EXPECT_TRUE(report.journalFailed) << "the disk is not to be trusted with another move";
    EXPECT_EQ(report.journalFailure, "The disk did not confirm the move: Input/output error");
    EXPECT_TRUE(home.entries().empty()) << "the lines could outlast the moves";
    EXPECT_EQ(titles(settleIntents(*home.journal).recorded), (Names{"one", "two"}));
}

TEST(Trasher, MovesAnItemOnceWhateverElseNamesIt) {
    MoverHome home;
    home.file("a/folder/inside");
    home.file("a/blocked/inside");
    home.file("a/folder 2");
    auto blocked = home.item("a/blocked");
    blocked.blockedReason = "Not today";
    const std::vector items{home.item("a/folder/inside"),
                            home.item("a/folder"),
                            home.item("a/folder 2"),
                            home.item("a/folder", DeletionModule::largeOld),
                            blocked,
                            home.item("a/blocked/inside"),
                            blocked};
    std::vector<std::size_t> begun;
    const auto progress = onBegin([&](std::size_t index) { begun.push_back(index); });
    for (const bool isRehearsal : {true, false}) {
        begun.clear();
        const auto report = isRehearsal ? home.trasher.rehearse(items, "session", progress, nullptr)
                                        : home.trasher.run(items, "session", progress, nullptr);
        EXPECT_EQ(titles(report.moved), (Names{"folder", "folder 2", "inside"}));
        EXPECT_EQ(skipReason(report), "Not today");
        EXPECT_EQ(begun, (std::vector<std::size_t>{1, 2, 4, 5})) << "counted in the list that was given";
    }
    // Of two for one path, the one that may be moved.
    home.file("a/item");
    auto refused = home.item("a/item");
    refused.blockedReason = "Not today";
    EXPECT_EQ(titles(home.run({refused, home.item("a/item")}).moved), Names{"item"});
}

TEST(Trasher, WhatWasToldToBeSkippedIsNoDoubtAfterACrash) {
    MoverHome home;
    const auto items = home.files({"a/fails", "a/waits", "a/crashes"});
    const auto progress = onBegin([&](std::size_t index) {
        home.fakeTrash->failure = index == 0 ? std::optional("Disk on fire") : std::nullopt;
    });
    home.fakeTrash->beforeMoving = [](const std::string& path) {
        if (path.ends_with("crashes"))
            ::_exit(0);
        std::this_thread::sleep_for(MoveRecord::longestUnrecorded);
    };
    test::inChildProcess([&] { home.trasher.run(items, "session", progress, nullptr); });
    EXPECT_EQ(home.intentFiles().size(), 1);
    fs::remove(items[0].path);
    EXPECT_EQ(settleIntents(*home.journal), Settlement());
    EXPECT_EQ(titles(home.entries()), (Names{"fails", "waits"}));
    EXPECT_TRUE(home.intentFiles().empty());
}

TEST(Trasher, StopsWhenSomethingElseArrivesInTheTrash) {
    const std::vector<std::pair<const char*, std::function<void(const MoverHome&)>>> swaps{
        {"another file in its place",
         [](const MoverHome& home) {
             fs::rename(home.path("a/item"), home.path("a/aside"));
             home.file("a/item", "item");
         }},
        {"a link in its place",
         [](const MoverHome& home) {
             fs::rename(home.path("a/item"), home.path("a/aside"));
             home.link("a/item", home.path("a/aside"));
         }},
        {"a link in its folder's place",
         [](const MoverHome& home) {
             home.file("b/item", "b/item");
             test::replaceByLink(home.path("a"), home.path("aside"), home.path("b"));
         }},
    };
    for (const auto& [what, swap] : swaps) {
        SCOPED_TRACE(what);
        MoverHome home;
        auto items = home.files({"a/item", "c/next"});
        home.fakeTrash->beforeMoving = [&](const std::string&) { swap(home); };
        const auto report = home.run(items);
        EXPECT_EQ(skipReason(report), "The moved item did not match the approved item — check the Trash");
        EXPECT_TRUE(report.stoppedForMismatch);
        EXPECT_TRUE(report.moved.empty());
        EXPECT_TRUE(fs::exists(items[1].path));
        const auto lines = home.entries();
        ASSERT_EQ(lines.size(), 1);
        EXPECT_EQ(lines[0].result, JournalEntry::Result::skipped);
        EXPECT_EQ(lines[0].trashPath, home.trashed("item"));
        EXPECT_EQ(lines[0].trashedIdentity, TrashedIdentity::of(home.trashed("item"))) << "what was found";
        EXPECT_EQ(settleIntents(*home.journal), Settlement()) << "its outcome is known";
        EXPECT_EQ(home.entries(), lines);
    }
}

TEST(Trasher, AnItemChangedInTheLastMomentStopsTheRunAndCanBePutBack) {
    MoverHome home;
    const auto items = home.files({"a/item", "c/next"});
    home.fakeTrash->beforeMoving = [&](const std::string&) { home.file("a/item", "edited!"); };
    const auto report = home.run(items);
    EXPECT_EQ(titles(report.moved), Names{"item"});
    EXPECT_EQ(skipReason(report), "The moved item did not match the approved item — check the Trash");
    EXPECT_TRUE(report.stoppedForMismatch);
    EXPECT_FALSE(report.journalFailed);
    EXPECT_TRUE(fs::exists(items[1].path));
    ASSERT_EQ(home.entries().size(), 1);
    EXPECT_EQ(home.entries()[0].trashedIdentity, TrashedIdentity::of(home.trashed("item")));
    EXPECT_TRUE(home.intentFiles().empty());
    const PutBack putBack(home.policy, home.journal, std::make_shared<test::FakeRestore>());
    EXPECT_TRUE(putBack.putBackLast().results.at(0).restored);
}

TEST(Trasher, ANumberGivenAgainDoesNotPassForTheApprovedFile) {
    MoverHome home;
    const auto items = home.files({"a/item"});
    const auto time = fs::last_write_time(items[0].path);
    home.fakeTrash->afterMoving = [&](const std::string& trashPath) {
        fs::remove(trashPath);
        home.file(trashPath.substr(home.path().size() + 1), "a/item");
        fs::last_write_time(trashPath, time);
    };
    const auto report = home.run(items);
    EXPECT_TRUE(report.stoppedForMismatch) << "same name, size and time, and maybe the same inode number";

    MoverHome other;
    other.fakeTrash->afterMoving = [&](const std::string& trashPath) { fs::remove(trashPath); };
    EXPECT_TRUE(other.run(other.files({"a/item"})).stoppedForMismatch);
    EXPECT_EQ(other.entries()[0].trashedIdentity, std::nullopt) << "nothing was found there";
}

TEST(Trasher, FinishesTheItemInProgressWhenItIsCancelled) {
    MoverHome home;
    const auto items = home.files({"a/1", "a/2", "a/3", "a/4", "a/5"});
    bool isCancelled = false;
    home.fakeTrash->beforeMoving = [&](const std::string& path) { isCancelled = path.ends_with("3"); };
    std::vector<std::size_t> begun;
    const auto report =
        home.trasher.run(items, "session", onBegin([&](std::size_t index) { begun.push_back(index); }),
                         [&] { return isCancelled; });
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(titles(report.moved), (Names{"1", "2", "3"}));
    EXPECT_TRUE(report.skipped.empty());
    EXPECT_EQ(begun, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(home.entries().size(), 3);
    EXPECT_TRUE(fs::exists(items[3].path) && fs::exists(items[4].path));
}

TEST(Trasher, ARehearsalChecksAllAndWritesNothing) {
    MoverHome home;
    auto items = home.files({"a/one", "a/two", "a/changed"});
    home.file("a/changed", "other");
    const auto report = home.trasher.rehearse(items, "session", nullptr, nullptr);
    EXPECT_EQ(titles(report.moved), (Names{"one", "two"}));
    EXPECT_GT(report.moved[0].bytes, 0);
    EXPECT_EQ(skipReason(report), "Changed since the scan — scan again");
    EXPECT_TRUE(home.fakeTrash->asked.empty());
    EXPECT_FALSE(fs::exists(home.path(".local"))) << "no journal, no intents, no Trash";
}

TEST(Trasher, AHomeOfSomebodyElseGetsNoJournal) {
    MoverHome home;
    const auto items = home.files({"a/one"});
    auto options = test::linuxOptions();
    const Trasher trasher(SafetyPolicy("/", options), home.journal, home.fakeTrash);
    EXPECT_EQ(skipReason(trasher.run(items, "session", nullptr, nullptr)),
              "The home folder is the root folder, so nothing is moved or put back");
    EXPECT_FALSE(fs::exists(home.path(".local")));
}

TEST(DeletionSession, RunsWhatIsRegisteredInTheOrderOfItsIds) {
    MoverHome home;
    const auto items = home.files({"a/1", "a/2", "a/3"});
    DeletionSession session(home.trasher);
    session.registerItems(items);
    auto blocked = items[1];
    blocked.blockedReason = "Not today";
    session.registerItems(std::vector{blocked});
    EXPECT_EQ(session.item(blocked.id), blocked);
    EXPECT_EQ(session.item("map:/unknown"), std::nullopt);

    const std::vector<std::string> ids{items[2].id, "map:/unknown", items[1].id, items[0].id};
    const auto report = session.run(ids, nullptr, nullptr).get();
    EXPECT_EQ(titles(report.moved), (Names{"3", "1"}));
    EXPECT_EQ(skipReason(report), "Not today");
    EXPECT_NE(session.run({}, nullptr, nullptr).get().sessionID, report.sessionID);
}

} // namespace
} // namespace orbel
