#include "Journal/IntentSettling.h"
#include "Journal/PutBack.h"
#include "Support/FakeMoves.h"
#include "Support/Faults.h"
#include "Support/MoverHome.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::FakeRestore;
using test::MoverHome;
using Result = JournalEntry::Result;

/// A home in which files were moved to the Trash, and what puts them back.
class PutBackTest : public ::testing::Test {
protected:
    /// Moves them as one session and gives their entries.
    std::vector<JournalEntry> trashed(const std::vector<std::string>& names) {
        home.run(home.files(names));
        return home.journal->restorable();
    }
    PutBack putBack() const {
        return {home.policy, home.journal, restore, std::nullopt, [this] { return home.now; }};
    }

    /// The attempt fails with this reason, and neither the disk nor the journal changes.
    void expectGone(const JournalEntry& entry, const std::string& reason) {
        const auto before = home.entries();
        EXPECT_EQ(putBack().putBack(entry), (PutBackResult{entry.title, entry.originalPath, false, reason}));
        EXPECT_EQ(home.entries(), before);
        EXPECT_TRUE(restore->asked.empty());
        EXPECT_TRUE(home.intentFiles().empty());
    }

    /// The only attempt fails with this reason, changes nothing, is recorded and may be repeated.
    void expectRefused(const JournalEntry& entry, const std::string& reason) {
        const auto before = home.entries();
        const auto result = putBack().putBack(entry);
        EXPECT_EQ(result, (PutBackResult{entry.title, entry.originalPath, false, reason}));
        const auto after = home.entries();
        ASSERT_EQ(after.size(), before.size() + 1);
        EXPECT_EQ(after.back().result, Result::restoreFailed);
        EXPECT_EQ(after.back().reason, reason);
        EXPECT_EQ(after.back().refersTo, entry.id);
        EXPECT_TRUE(restore->asked.empty());
        EXPECT_TRUE(home.intentFiles().empty());
    }

    MoverHome home;
    std::shared_ptr<FakeRestore> restore = std::make_shared<FakeRestore>();
};

TEST_F(PutBackTest, PutsAnItemBackAndRecordsIt) {
    const auto moved = trashed({"a/item"}).at(0);
    home.now += std::chrono::hours(1);
    EXPECT_EQ(putBack().putBackEntry(moved.id),
              (PutBackResult{"item", home.path("a/item"), true, std::nullopt}));
    EXPECT_EQ(readFile(home.path("a/item")), "a/item");
    EXPECT_TRUE(home.contents().empty());

    const auto lines = home.entries();
    ASSERT_EQ(lines.size(), 2);
    auto expected = moved;
    expected.id = lines[1].id;
    expected.time = home.now;
    expected.result = Result::restored;
    expected.refersTo = moved.id;
    expected.approvedRealPath = std::nullopt;
    expected.trashedIdentity = std::nullopt;
    expected.note = std::nullopt;
    EXPECT_EQ(lines[1], expected);
    EXPECT_NE(lines[1].id, moved.id);
    EXPECT_TRUE(home.intentFiles().empty());

    EXPECT_EQ(putBack().putBackEntry(moved.id), std::nullopt) << "it is back already";
    EXPECT_EQ(putBack().putBackEntry("unknown"), std::nullopt);
    EXPECT_TRUE(putBack().putBackSession("session").empty());
}

TEST_F(PutBackTest, ASessionComesBackInReverseAndAFailureStopsNobody) {
    const auto moved = trashed({"a/1", "a/2", "a/3"});
    home.file("a/2", "in the way");
    const auto results = putBack().putBackSession("session");
    ASSERT_EQ(results.size(), 3);
    EXPECT_EQ(results[0].title, "3");
    EXPECT_EQ(results[1].reason, "Something already exists at the original location");
    EXPECT_EQ(results[2].title, "1");
    EXPECT_TRUE(results[0].restored && results[2].restored);
    EXPECT_EQ(readFile(home.path("a/2")), "in the way");
    EXPECT_EQ(home.journal->restorable(), (std::vector{moved[1]})) << "it is offered again";

    fs::remove(home.path("a/2"));
    bool isCancelled = true;
    EXPECT_TRUE(putBack().putBackSession("session", [&] { return isCancelled; }).empty());
    isCancelled = false;
    EXPECT_TRUE(putBack().putBackSession("session", [&] { return isCancelled; }).at(0).restored);
}

TEST_F(PutBackTest, TheLastSessionIsTheNewestOfWhichSomethingCanComeBack) {
    EXPECT_TRUE(putBack().putBackLast().results.empty());
    const auto move = [&](const char* session, const std::vector<std::string>& names) {
        home.now += std::chrono::hours(1);
        home.trasher.run(home.files(names), session, nullptr, nullptr);
    };
    move("old", {"a/back", "a/emptied"});
    move("new", {"b/taken", "b/gone"});
    fs::remove(home.trashed("emptied"));
    fs::remove(home.trashed("gone"));
    home.file("b/taken", "in the way");
    constexpr auto gone = "No longer in the Trash (emptied or moved)";
    constexpr auto taken = "Something already exists at the original location";

    const auto lines = home.entries().size();
    const auto old = putBack().putBackLast();
    EXPECT_EQ(old.sessionID, "old") << "what is gone for good does not hold up the rest";
    EXPECT_EQ(old.results, (std::vector<PutBackResult>{{"emptied", home.path("a/emptied"), false, gone},
                                                       {"back", home.path("a/back"), true}}));
    EXPECT_EQ(home.entries().size(), lines + 1);

    const auto none = putBack().putBackLast();
    EXPECT_EQ(none.sessionID, "new");
    EXPECT_EQ(none.results, (std::vector<PutBackResult>{{"gone", home.path("b/gone"), false, gone},
                                                        {"taken", home.path("b/taken"), false, taken}}));
    EXPECT_EQ(home.entries().size(), lines + 1) << "nothing was tried";

    fs::remove(home.path("b/taken"));
    EXPECT_TRUE(putBack().putBackLast().results.at(1).restored);
    EXPECT_EQ(home.entries().size(), lines + 2);
}

TEST_F(PutBackTest, WhatIsNoCompletedMoveHasNothingToPutBack) {
    const auto moved = trashed({"a/item"}).at(0);
    for (const auto spoil : std::initializer_list<void (*)(JournalEntry&)>{
             [](JournalEntry& entry) { entry.result = Result::skipped; },
             [](JournalEntry& entry) { entry.trashPath.reset(); },
             [](JournalEntry& entry) { entry.trashedIdentity.reset(); }}) {
        auto entry = moved;
        spoil(entry);
        expectRefused(entry, "Nothing to put back");
    }
}

TEST_F(PutBackTest, WhatLiesInTheTrashMustBeWhatWasMoved) {
    const auto moved = trashed({"a/gone", "a/other", "a/longer", "b/folder/inside"});
    fs::remove(home.trashed("gone"));
    expectGone(moved[0], "No longer in the Trash (emptied or moved)");
    fs::rename(home.trashed("other"), home.trashed("aside"));
    home.file(".local/share/Trash/files/other", "a/other");
    expectGone(moved[1], "The item in the Trash is a different file");
    home.file(".local/share/Trash/files/longer", "much longer than it was");
    expectGone(moved[2], "The item in the Trash is a different file");
    EXPECT_EQ(home.journal->restorable().size(), 4);
}

TEST_F(PutBackTest, AFolderMayHaveChangedItsSize) {
    home.folder("a/folder");
    home.run({home.item("a/folder")});
    for (int i = 0; i < 300; ++i)
        home.file(".local/share/Trash/files/folder/a rather long name for a file " + std::to_string(i));
    EXPECT_TRUE(putBack().putBackSession("session").at(0).restored);
}

TEST_F(PutBackTest, RecognisesAnItemAfterItsVolumeGotAnotherNumber) {
    auto moved = trashed({"a/item"}).at(0);
    if (!moved.trashedIdentity->persistent)
        GTEST_SKIP() << "this file system tells nothing that survives a remount";
    moved.trashedIdentity->device += 1;
    auto other = moved;
    other.trashedIdentity->persistent->birthNanos += 1;
    expectGone(other, "The item in the Trash is a different file");
    EXPECT_TRUE(putBack().putBack(moved).restored);
}

TEST_F(PutBackTest, OnlyWhatLiesInATrashFolderComesBack) {
    const auto moved = trashed({"a/item"}).at(0);
    auto elsewhere = moved;
    elsewhere.trashPath = home.path("a/elsewhere");
    fs::rename(home.trashed("item"), *elsewhere.trashPath);
    expectGone(elsewhere, "Not in a Trash folder");
    fs::rename(*elsewhere.trashPath, home.trashed("item"));

    auto trash = moved;
    trash.trashPath = home.trash() + "/files";
    trash.trashedIdentity = TrashedIdentity::of(*trash.trashPath);
    expectGone(trash, "Not in a Trash folder");
    const PutBack otherTrash(home.policy, home.journal, restore,
                             std::vector{home.path("trash"), home.path("a")});
    EXPECT_EQ(otherTrash.reasonNotToRestore(moved), "Not in a Trash folder");
    const PutBack linkedTrash(home.policy, home.journal, restore,
                              std::vector{home.link("link", home.trash() + "/files") + "/"});
    EXPECT_EQ(linkedTrash.reasonNotToRestore(moved), std::nullopt)
        << "folders are compared by their real paths";
}

TEST_F(PutBackTest, ReplacesNothing) {
    const auto moved = trashed({"a/item"}).at(0);
    const auto place = home.path("a/item");
    for (const auto& occupy : std::initializer_list<std::function<void()>>{
             [&] { home.file("a/item", "other"); }, [&] { home.folder("a/item"); },
             [&] { home.link("a/item", "/nowhere"); },
             [&] { fs::create_hard_link(home.trashed("item"), place); }}) {
        occupy();
        expectRefused(moved, "Something already exists at the original location");
        fs::remove_all(place);
    }
    EXPECT_EQ(readFile(home.trashed("item")), "a/item");
}

TEST_F(PutBackTest, TheOldFolderMustBeTheSameFolder) {
    const auto moved = trashed({"a/b/item"}).at(0);
    constexpr auto reason = "The original folder no longer exists or moved";
    test::replaceByLink(home.path("a/b"), home.path("moved"), home.path("moved"));
    expectRefused(moved, reason);
    fs::remove(home.path("a/b"));
    expectRefused(moved, reason);
    fs::rename(home.path("moved"), home.path("a/b"));
    auto unknown = moved;
    unknown.originalParentRealPath.reset();
    expectRefused(unknown, reason);
}

TEST_F(PutBackTest, AnotherFolderOfTheSameNameIsNotTheOldFolder) {
    const auto moved = trashed({"a/b/item"}).at(0);
    ASSERT_EQ(moved.originalParentIdentity, TrashedIdentity::of(home.path("a/b")));
    auto renumbered = moved; // as after a remount
    renumbered.originalParentIdentity->device += 1;
    EXPECT_EQ(putBack().reasonNotToRestore(renumbered).has_value(),
              !moved.originalParentIdentity->persistent.has_value());

    fs::rename(home.path("a/b"), home.path("a/moved"));
    home.folder("a/b");
    expectRefused(moved, "The original folder no longer exists or moved");
    expectRefused(renumbered, "The original folder no longer exists or moved");
    auto earlier = moved; // a line of a version that did not know the folder's identity
    earlier.originalParentIdentity.reset();
    EXPECT_TRUE(putBack().putBack(earlier).restored);
}

TEST_F(PutBackTest, ALinkThatTakesTheFoldersPlaceLeadsNowhere) {
    const test::TemporaryFolder outside;
    const auto moved = trashed({"a/b/item"}).at(0);
    restore->beforeMoving = [&](const std::string&) {
        test::replaceByLink(home.path("a/b"), home.path("a/moved"), outside.path());
    };
    EXPECT_EQ(putBack().putBack(moved),
              (PutBackResult{"item", moved.originalPath, true,
                             "Put back into its folder, which was moved meanwhile"}));
    EXPECT_TRUE(fs::is_empty(outside.path()));
    EXPECT_EQ(readFile(home.path("a/moved/item")), "a/b/item");
    EXPECT_EQ(home.entries().back().result, Result::restored);
}

TEST_F(PutBackTest, AnotherProgramMayBeQuickerToPutItBack) {
    const auto moved = trashed({"a/item"}).at(0);
    const auto other = std::make_shared<FakeRestore>();
    restore->beforeMoving = [&](const std::string&) {
        EXPECT_TRUE(PutBack(home.policy, home.journal, other).putBack(moved).restored);
    };
    EXPECT_EQ(putBack().putBack(moved), (PutBackResult{"item", moved.originalPath, false,
                                                       "No longer in the Trash (emptied or moved)"}));
    EXPECT_EQ(home.entries().size(), 2);
    EXPECT_TRUE(home.journal->restorable().empty());
    EXPECT_TRUE(home.intentFiles().empty());
}

TEST_F(PutBackTest, ItsNameInTheTrashMayBeTakenAtOnce) {
    const auto moved = trashed({"a/item"}).at(0);
    restore->afterMoving = [&](const std::string&) {
        std::filesystem::remove(home.infoOf("item"));
        home.putIntoTrash("item", "/elsewhere");
    };
    EXPECT_TRUE(putBack().putBack(moved).restored);
    EXPECT_EQ(home.contents(), (std::vector<std::string>{"files/item", "info/item.trashinfo"}))
        << "another item, with its note";
}

TEST_F(PutBackTest, ThePolicyHasTheLastWord) {
    const auto moved = trashed({"a/item"}).at(0);
    const auto from = [&](const std::string& relative) {
        auto entry = moved;
        entry.originalPath = home.path(relative);
        entry.originalParentRealPath = std::string(parentPath(entry.originalPath));
        fs::create_directories(*entry.originalParentRealPath);
        entry.originalParentIdentity = TrashedIdentity::of(*entry.originalParentRealPath);
        return entry;
    };
    expectRefused(from("item"), "Cannot restore there: Too close to the home folder");
    expectRefused(from(".ssh/item"), "Cannot restore to a protected location (Protected: ~/.ssh)");
    expectRefused(from("a/item.keychain"),
                  "Cannot restore to a protected location (Protected library or backup)");
}

TEST_F(PutBackTest, JudgesADestinationByTheSamePlacesAsTheMove) {
    for (const auto* folder : {"Applications/Utilities", ".cache", ".config", "Library/Caches", "a"})
        home.folder(folder);
    const auto root = [&](std::string_view relative) {
        return putBack().rootForDestination(home.path(relative));
    };
    using enum AllowedRoot;
    EXPECT_EQ(root("Applications/X.app"), applicationBundle);
    EXPECT_EQ(root("Applications/Utilities/X.app"), applicationBundle);
    EXPECT_EQ(root("Applications/X"), applicationBundle);
    EXPECT_EQ(root("Applications/Utilities/X"), homeItem);
    EXPECT_EQ(root("a/X.app"), homeItem);
    EXPECT_EQ(root("Library/Caches/org.example"), leftover);
    EXPECT_EQ(root(".config/example"), leftover);
    EXPECT_EQ(root("a/item"), homeItem);
    EXPECT_EQ(root("missing/item"), homeItem);

    // An application's leftover comes back to where no other item may go.
    home.file(".config/example", "settings");
    auto item = home.item(".config/example");
    item.root = leftover;
    home.run({item});
    EXPECT_TRUE(putBack().putBackSession("session").at(0).restored);
}

TEST_F(PutBackTest, WithoutAJournalNothingMoves) {
    const auto moved = trashed({"a/item"}).at(0);
    constexpr auto reason = "Could not write the journal, so nothing was put back";
    home.breakJournal();
    EXPECT_EQ(putBack().putBack(moved), (PutBackResult{"item", moved.originalPath, false, reason,
                                                       home.journal->path() + ": is not a regular file"}));
    home.mendJournal();
    EXPECT_EQ(home.entries().size(), 1);
    fs::remove_all(home.path(".local/share/Ostrevo Orbel/intents"));
    const auto intents = home.file(".local/share/Ostrevo Orbel/intents", "not a folder");
    EXPECT_EQ(putBack().putBack(moved),
              (PutBackResult{"item", moved.originalPath, false, reason, intents + ": Not a directory"}));
    EXPECT_TRUE(restore->asked.empty());
    EXPECT_EQ(home.entries().back().reason, reason) << "the journal itself can be written";
}

TEST_F(PutBackTest, AFailedMoveIsToldInItsWords) {
    const auto moved = trashed({"a/item"}).at(0);
    restore->failure = "Disk on fire";
    EXPECT_EQ(putBack().putBack(moved).reason, "Could not put it back: Disk on fire");
    EXPECT_EQ(home.entries().back().reason, "Could not put it back: Disk on fire");
    EXPECT_TRUE(home.intentFiles().empty());
}

TEST_F(PutBackTest, AnUnrecordedReturnIsToldAndSettledLater) {
    const auto moved = trashed({"a/item"}).at(0);
    restore->afterMoving = [&](const std::string&) { home.breakJournal(); };
    const auto result = putBack().putBack(moved);
    EXPECT_TRUE(result.restored);
    EXPECT_EQ(result.reason, "Put back, but the journal could not be written");
    EXPECT_EQ(result.journalFailure, home.journal->path() + ": is not a regular file");
    home.mendJournal();
    EXPECT_EQ(home.journal->restorable().size(), 1);
    EXPECT_EQ(settleIntents(*home.journal).recorded.size(), 1);
    EXPECT_TRUE(home.journal->restorable().empty());
}

TEST_F(PutBackTest, AReturnThatTheDiskDidNotConfirmIsNotRecorded) {
    const auto moved = trashed({"a/item"}).at(0);
    restore->flushError = EIO;
    EXPECT_EQ(
        putBack().putBack(moved),
        (PutBackResult{"item", moved.originalPath, true, "Put back, but the journal could not be written",
                       "The disk did not confirm the move: Input/output error"}));
    EXPECT_EQ(home.entries().size(), 1);
    EXPECT_EQ(settleIntents(*home.journal).recorded.size(), 1);
    EXPECT_TRUE(home.journal->restorable().empty());
}

TEST_F(PutBackTest, ASwapInTheTrashIsNeverRecordedAsAReturn) {
    const auto moved = trashed({"a/item"}).at(0);
    const auto swap = [&](const std::string& from) {
        fs::rename(from, from + " aside");
        home.file(".local/share/Trash/files/item", "a/item");
    };
    restore->beforeMoving = swap;
    EXPECT_EQ(putBack().putBack(moved).reason,
              "What was put back did not match the item in the Trash — check its folder");
    EXPECT_EQ(home.entries().back().result, Result::restoreFailed);
    EXPECT_TRUE(fs::exists(home.trashed("item aside")));
    EXPECT_EQ(settleIntents(*home.journal), Settlement());
    EXPECT_EQ(home.journal->restorable().size(), 1);
}

} // namespace
} // namespace orbel
