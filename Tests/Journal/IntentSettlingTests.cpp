#include "Journal/IntentLog.h"
#include "Journal/IntentSettling.h"
#include "Journal/JournalJson.h"
#include "Support/ChildProcess.h"
#include "Support/JournalScene.h"
#include "Util/ReadFile.h"
#include "Util/Uuid.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

#include <unistd.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::exists;
using test::idsOf;
using test::JournalScene;
using Kind = MoveIntent::Kind;

struct Found {
    std::size_t recorded = 0;
    std::size_t doubts = 0;
    std::size_t failures = 0;

    bool operator==(const Found&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Found& found) {
    return stream << found.recorded << " recorded, " << found.doubts << " doubts, " << found.failures
                  << " failures";
}

Found settle(JournalScene& scene) {
    const auto settlement = settleIntents(scene.store);
    return {settlement.recorded.size(), settlement.doubts.size(), settlement.failures.size()};
}

/// Expects that settling finds this, leaves nothing behind, and finds nothing the second time.
void expectSettled(JournalScene& scene, const Found& expected, const std::string& what) {
    EXPECT_EQ(settle(scene), expected) << what;
    EXPECT_TRUE(scene.intentFiles().empty()) << what;
    EXPECT_EQ(settle(scene), Found{}) << what << ", again";
}

TEST(IntentSettling, WithoutIntentsNothingIsTouched) {
    JournalScene scene;
    EXPECT_EQ(settle(scene), Found{});
    EXPECT_FALSE(exists(scene.home.path("data")));
    scene.home.file("data/intents/notes.txt", "not ours");
    scene.home.file("data/intents/short.jsonl", "not ours");
    EXPECT_EQ(settle(scene), Found{});
    EXPECT_EQ(scene.intentFiles().size(), 2u);
    const auto prepared = prepareJournal(scene.path);
    EXPECT_EQ(prepared.store->path(), scene.path);
    EXPECT_EQ(prepared.settlement, Settlement{});
}

TEST(IntentSettling, WhereTheObjectIsDecides) {
    for (const auto kind : {Kind::toTrash, Kind::putBack}) {
        const auto begin = [kind](const JournalScene& scene) {
            return kind == Kind::toTrash ? scene.beginToTrash("film.mp4") : scene.beginPutBack("film.mp4");
        };
        const std::string what(rawValue(kind));
        {
            JournalScene scene;
            const auto intent = begin(scene);
            scene.leaveBehind({intent});
            test::move(intent);
            expectSettled(scene, {.recorded = 1}, what + ", moved");
            EXPECT_EQ(scene.store.entries(), std::vector{intent.entry});
            EXPECT_EQ(exists(intent.infoFile->path), kind == Kind::toTrash) << "the note goes with the item";
        }
        {
            JournalScene scene;
            const auto intent = begin(scene);
            scene.leaveBehind({intent});
            expectSettled(scene, {}, what + ", not begun");
            EXPECT_TRUE(scene.store.entries().empty());
            EXPECT_EQ(exists(intent.infoFile->path), kind == Kind::putBack);
        }
        {
            JournalScene scene;
            const auto intent = begin(scene);
            scene.leaveBehind({intent});
            fs::create_hard_link(intent.sourcePath, intent.destinationPath);
            expectSettled(scene, {.doubts = 1}, what + ", both names");
            EXPECT_TRUE(exists(intent.sourcePath) && exists(intent.destinationPath)
                        && exists(intent.infoFile->path));
        }
        {
            JournalScene scene;
            const auto intent = begin(scene);
            scene.leaveBehind({intent});
            fs::remove(intent.sourcePath);
            const auto settlement = settleIntents(scene.store);
            ASSERT_EQ(settlement.doubts.size(), 1u) << what << ", gone";
            EXPECT_EQ(settlement.doubts[0].entry, intent.entry);
            EXPECT_NE(settlement.doubts[0].words.find(intent.sourcePath), std::string::npos);
            EXPECT_TRUE(exists(intent.infoFile->path));
        }
    }
}

TEST(IntentSettling, SomebodyElsesFilesAreNeitherBelievedNorRemoved) {
    JournalScene scene;
    const auto intent = scene.beginToTrash("film.mp4");
    // The name in the Trash was taken by another file, and our note replaced by its own.
    scene.home.file("trash/files/film.mp4", "another film");
    scene.home.file("trash/info/film.mp4.trashinfo", "[Trash Info]\nPath=/elsewhere\n");
    scene.leaveBehind({intent});
    expectSettled(scene, {}, "another object at the destination");
    EXPECT_TRUE(exists(intent.sourcePath) && exists(intent.destinationPath) && exists(intent.infoFile->path));

    // A note that only begins like ours, or is reached through a link, is not ours either.
    for (const bool isLink : {false, true}) {
        const auto other = scene.beginToTrash(isLink ? "link" : "longer");
        scene.home.file("other", other.infoFile->content);
        fs::remove(other.infoFile->path);
        if (isLink)
            fs::create_symlink(scene.home.path("other"), other.infoFile->path);
        else
            scene.home.file("trash/info/longer.trashinfo", other.infoFile->content + "X-Ours=false\n");
        scene.leaveBehind({other});
        expectSettled(scene, {}, "another note");
        EXPECT_TRUE(exists(other.infoFile->path) && exists(scene.home.path("other")));
    }
}

TEST(IntentSettling, ANoteThatWasNotWrittenToItsEndIsRemoved) {
    for (const bool isNameTaken : {false, true})
        for (const std::size_t length : {0, 20}) {
            JournalScene scene;
            const auto intent = scene.beginToTrash("film.mp4");
            const auto note = intent.infoFile->content.substr(0, length);
            scene.home.file("trash/info/film.mp4.trashinfo", note);
            if (isNameTaken)
                scene.home.file("trash/files/film.mp4", "another film");
            scene.leaveBehind({intent});
            expectSettled(scene, {}, "a kill while the note was written");
            EXPECT_EQ(exists(intent.infoFile->path), isNameTaken) << length;
        }
}

TEST(IntentSettling, WhatWentToTheTrashInTheItemsPlaceIsToldAndKeepsItsNote) {
    JournalScene scene;
    const auto intent = scene.beginToTrash("film.mp4");
    scene.leaveBehind({intent});
    const auto aside = scene.home.path("aside");
    fs::rename(intent.sourcePath, aside);
    fs::rename(scene.home.file("another film"), intent.destinationPath);
    fs::rename(aside, intent.sourcePath);
    const auto settlement = settleIntents(scene.store);
    ASSERT_EQ(settlement.doubts.size(), 1u);
    EXPECT_TRUE(settlement.doubts[0].words.ends_with("something else went to the Trash in its place"));
    EXPECT_TRUE(exists(intent.destinationPath) && exists(intent.infoFile->path));
    EXPECT_TRUE(scene.store.entries().empty());
}

TEST(IntentSettling, AnObjectIsKnownByItsIdentityNotByItsNameOrState) {
    JournalScene scene;
    const auto intent = scene.beginToTrash("film.mp4");
    if (!intent.persistent)
        GTEST_SKIP() << "this file system tells neither births nor a UUID";
    auto elsewhere = intent;
    elsewhere.stamp.identity.device += 1; // as after a restart that counted the disks anew
    scene.leaveBehind({elsewhere});
    test::move(intent);
    scene.home.file("trash/files/film.mp4", "edited since, and of another length");
    expectSettled(scene, {.recorded = 1}, "another device number, edited");
    EXPECT_EQ(scene.store.entries().back().trashedIdentity, TrashedIdentity::of(intent.destinationPath))
        << "so that it can be put back as it is now";

    auto reused = scene.beginToTrash("reused");
    reused.persistent->birthNanos -= 1;
    scene.leaveBehind({reused});
    test::move(reused);
    expectSettled(scene, {.doubts = 1}, "the inode of an object that is gone");

    auto unborn = scene.beginToTrash("unborn");
    unborn.persistent.reset();
    unborn.stamp.size += 1;
    scene.leaveBehind({unborn});
    test::move(unborn);
    expectSettled(scene, {.doubts = 1}, "without a birth the size must be the same");
}

TEST(IntentSettling, OfSeveralAttemptsTheOneThatSucceededIsRecorded) {
    for (const std::size_t succeeded : {0, 1, 2, 3}) {
        JournalScene scene;
        std::vector<MoveIntent> attempts{scene.beginToTrash("film.mp4")};
        for (const std::string name : {"film.mp4.2", "film.mp4.3"}) {
            auto next = attempts[0];
            next.destinationPath = scene.home.path("trash/files/" + name);
            next.entry.trashPath = next.destinationPath;
            next.infoFile->path =
                scene.home.file("trash/info/" + name + ".trashinfo", next.infoFile->content);
            attempts.push_back(next);
        }
        scene.leaveBehind(attempts);
        if (succeeded < attempts.size())
            test::move(attempts[succeeded]);
        expectSettled(scene, {.recorded = succeeded < attempts.size()}, std::to_string(succeeded));
        for (std::size_t i = 0; i < attempts.size(); ++i)
            EXPECT_EQ(exists(attempts[i].infoFile->path), i == succeeded) << i << " of " << succeeded;
        const auto expected = succeeded < attempts.size() ? std::vector{attempts[succeeded].entry}
                                                          : std::vector<JournalEntry>{};
        EXPECT_EQ(scene.store.entries(), expected);
    }
}

TEST(IntentSettling, WhatTheJournalHoldsAlreadyIsNotWrittenTwice) {
    JournalScene scene;
    const auto moved = scene.beginToTrash("moved");
    const auto lost = scene.beginToTrash("lost");
    const auto back = scene.beginPutBack("back");
    scene.leaveBehind({moved, lost, back});
    for (const auto* intent : {&moved, &lost, &back}) {
        test::move(*intent);
        ASSERT_TRUE(intent == &lost || scene.store.append(intent->entry));
    }
    expectSettled(scene, {.recorded = 1}, "one of three lines missing");
    EXPECT_EQ(idsOf(scene.store.entries()), (std::vector{moved.entry.id, back.entry.id, lost.entry.id}));
    EXPECT_FALSE(exists(back.infoFile->path)) << "the note of what is back, which the crash left";

    // Recorded, and since then put back by another process, or gone for good: nothing is left to say.
    const auto restored = scene.beginToTrash("restored");
    const auto gone = scene.beginToTrash("gone");
    scene.leaveBehind({restored, gone});
    ASSERT_TRUE(scene.store.append(restored.entry) && scene.store.append(gone.entry));
    auto restoredLine = restored.entry;
    restoredLine.id = newUuid();
    restoredLine.result = JournalEntry::Result::restored;
    restoredLine.refersTo = restored.entry.id;
    ASSERT_TRUE(scene.store.append(restoredLine));
    fs::remove(gone.sourcePath);
    expectSettled(scene, {}, "both recorded");

    // Recorded, and at its place although nothing put it back: a disk that loses what it confirmed does that.
    const auto untrue = scene.beginToTrash("untrue");
    scene.leaveBehind({untrue});
    ASSERT_TRUE(scene.store.append(untrue.entry));
    expectSettled(scene, {.doubts = 1}, "the journal says that it moved");
    EXPECT_TRUE(exists(untrue.sourcePath));

    // Another process was quicker to put it back, and it was moved on since.
    const auto slower = scene.beginPutBack("slower");
    auto quicker = slower.entry;
    quicker.id = newUuid();
    scene.leaveBehind({slower});
    ASSERT_TRUE(scene.store.append(quicker));
    fs::remove(slower.sourcePath);
    expectSettled(scene, {}, "restored by another line");
}

TEST(IntentSettling, ATornLastLineHadNotBegunAndAnUnreadableOneIsKept) {
    JournalScene scene;
    const auto moved = scene.beginToTrash("moved");
    const auto torn = scene.beginToTrash("torn");
    const auto whole = nlohmann::json(moved).dump() + "\n";
    const auto last = nlohmann::json(torn).dump();
    for (const std::string& tail :
         {std::string(), last.substr(0, last.size() / 2), last, std::string(4096, '\0')}) {
        JournalScene fresh;
        fresh.home.file("data/intents/" + newUuid() + ".jsonl", whole + tail);
        EXPECT_EQ(settle(fresh), (Found{.doubts = 0})) << "still at its source";
        EXPECT_TRUE(fresh.intentFiles().empty());
        EXPECT_TRUE(exists(torn.infoFile->path)) << "nothing of the torn line is acted upon";
    }
    scene.home.file("data/intents/" + newUuid() + ".jsonl", "{\"kind\":\"copy\"}\n" + whole);
    test::move(moved);
    EXPECT_EQ(settle(scene), (Found{.recorded = 1, .failures = 1}));
    EXPECT_EQ(settle(scene), (Found{.failures = 1})) << "told again until somebody looks";
    EXPECT_EQ(scene.intentFiles().size(), 1u);
}

TEST(IntentSettling, WhatCannotBeWrittenNowIsTriedAgain) {
    JournalScene scene;
    const auto intent = scene.beginToTrash("film.mp4");
    scene.leaveBehind({intent});
    test::move(intent);
    scene.home.folder("data/journal.jsonl");
    EXPECT_EQ(settle(scene), (Found{.failures = 1}));
    EXPECT_EQ(scene.intentFiles().size(), 1u);
    fs::remove(scene.path);
    expectSettled(scene, {.recorded = 1}, "the journal can be written again");

    const auto name = newUuid() + ".jsonl";
    scene.home.link("data/intents/" + name, scene.home.file("other", nlohmann::json(intent).dump() + "\n"));
    EXPECT_EQ(settle(scene), (Found{.failures = 1})) << "a link in the place of intents";
    EXPECT_TRUE(exists(scene.home.path("other")));
}

/// Intents of many moves that were all made, in several files.
std::vector<std::string> leaveMovesBehind(const JournalScene& scene, int files, int moves) {
    std::vector<std::string> ids;
    for (int file = 0; file < files; ++file) {
        std::vector<MoveIntent> intents;
        for (int i = 0; i < moves; ++i) {
            intents.push_back(scene.beginToTrash(std::to_string(file) + "-" + std::to_string(i)));
            ids.push_back(intents.back().entry.id);
        }
        scene.leaveBehind(intents);
        for (const auto& intent : intents)
            test::move(intent);
    }
    std::ranges::sort(ids);
    return ids;
}

std::vector<std::string> sortedIds(const JournalScene& scene) {
    auto ids = idsOf(scene.store.entries());
    std::ranges::sort(ids);
    return ids;
}

TEST(IntentSettling, SeveralProcessesAtOnceWriteEachLineOnce) {
    JournalScene scene;
    const auto ids = leaveMovesBehind(scene, 6, 4);
    test::inChildProcesses(4, [&](std::size_t) {
        JournalStore own(scene.path);
        EXPECT_TRUE(settleIntents(own).failures.empty());
    });
    EXPECT_EQ(sortedIds(scene), ids);
    EXPECT_TRUE(scene.intentFiles().empty());
}

TEST(IntentSettling, ASettlerThatIsKilledIsFinishedByTheNext) {
    for (const std::size_t lines : {1, 5, 9, 11}) {
        JournalScene scene;
        const auto ids = leaveMovesBehind(scene, 2, 6);
        const auto settler = test::startChildProcess([&] {
            JournalStore own(scene.path);
            settleIntents(own);
        });
        while (static_cast<std::size_t>(std::ranges::count(scene.content(), '\n')) < lines)
            ;
        test::killChildProcess(settler);
        EXPECT_TRUE(settleIntents(scene.store).failures.empty());
        EXPECT_EQ(sortedIds(scene), ids) << "killed after " << lines;
        EXPECT_TRUE(scene.intentFiles().empty());
    }
}

} // namespace
} // namespace orbel
