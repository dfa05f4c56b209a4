#include "Delete/LiveTrash.h"
#include "Journal/Barrier.h"
#include "Journal/HeldFolder.h"
#include "Journal/IntentSettling.h"
#include "Journal/LiveRestore.h"
#include "Journal/PutBack.h"
#include "Platform/Synchronise.h"
#include "Support/ChildProcess.h"
#include "Support/Faults.h"
#include "Support/FlushHook.h"
#include "Support/JournalScene.h"
#include "Support/MoverHome.h"
#include "Util/PathText.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/personality.h>
#include <unistd.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::Flush;
using test::FlushHook;
using test::MoverHome;
using test::TemporaryFolder;

FileDescriptor openPath(const std::string& path) {
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

HeldFolder hold(const std::string& path) {
    return HeldFolder::open(path).value();
}

Flush flushOf(const std::string& path, bool isAll = false) {
    return {.file = FileIdentity::of(path).value(), .isAll = isAll};
}

/// What is flushed while `work` runs.
std::vector<Flush> flushesOf(const std::function<void()>& work) {
    std::vector<Flush> flushes;
    const FlushHook hook([&](const Flush& flush) {
        flushes.push_back(flush);
        return 0;
    });
    work();
    return flushes;
}

bool isOneFlushEnough(const std::string& folder) {
    return platform::mayFlushWholeFileSystem(openPath(folder).get());
}

#define SKIP_WHERE_ONE_FLUSH_IS_NOT_ENOUGH(folder)                                                           \
    if (!isOneFlushEnough(folder))                                                                           \
    GTEST_SKIP() << folder << " is not on ext4, XFS or Btrfs"

#define SKIP_WHERE_FOLDERS_DO_NOT_KEEP_MOVES()                                                               \
    if (const TemporaryFolder home; !platform::keepsMovesByFolder(openPath(home.path()).get()))              \
    GTEST_SKIP() << home.path() << " is on Btrfs"

TEST(Barrier, FlushesEachByItselfAndTheNewNameFirst) {
    const TemporaryFolder home;
    const auto file = openPath(home.file("file"));
    for (const auto* name : {"to", "from", "other"})
        home.folder(name);
    Barrier barrier;
    barrier.addMove(hold(home.path("from")), hold(home.path("to")));
    barrier.addMove(hold(home.path("other")), hold(home.path("to")));
    barrier.add(file.get());
    EXPECT_FALSE(barrier.keepsOrder());
    EXPECT_EQ(flushesOf([&] { EXPECT_TRUE(barrier.pass()); }),
              (std::vector{flushOf(home.path("file")), flushOf(home.path("to")), flushOf(home.path("from")),
                           flushOf(home.path("other"))}));
    EXPECT_EQ(flushesOf([&] { EXPECT_TRUE(barrier.pass()); }), std::vector<Flush>{}) << "all is done";

    barrier.add(file.get());
    const FlushHook hook([](const Flush&) { return EIO; });
    EXPECT_EQ(barrier.pass(), std::unexpected(EIO));
}

TEST(Barrier, OneFlushTakesInAllThatLiesOnItsFileSystem) {
    const TemporaryFolder home;
    SKIP_WHERE_ONE_FLUSH_IS_NOT_ENOUGH(home.path());
    home.folder("to");
    home.folder("from");
    const auto file = openPath(home.file("file"));
    Barrier barrier(openPath(home.path()));
    EXPECT_EQ(flushesOf([&] { EXPECT_TRUE(barrier.pass()); }), std::vector<Flush>{}) << "nothing was added";
    barrier.addMove(hold(home.path("from")), hold(home.path("to")));
    barrier.add(file.get());
    EXPECT_TRUE(barrier.keepsOrder());
    EXPECT_EQ(flushesOf([&] { EXPECT_TRUE(barrier.pass()); }), std::vector{flushOf(home.path(), true)});
    barrier.add(file.get());
    barrier.fail(EMFILE);
    EXPECT_FALSE(barrier.keepsOrder());
    EXPECT_EQ(barrier.pass(), std::unexpected(EMFILE));
}

TEST(Barrier, FlushesEachWhereOneFlushIsNotToBeTrusted) {
    const TemporaryFolder home;
    SKIP_WHERE_ONE_FLUSH_IS_NOT_ENOUGH(home.path());
    const auto file = openPath(home.file("file"));
    const auto expectEach = [&](const std::string& what) {
        Barrier barrier(openPath(home.path()));
        barrier.add(file.get());
        EXPECT_FALSE(barrier.keepsOrder()) << what;
        EXPECT_EQ(flushesOf([&] { EXPECT_TRUE(barrier.pass()); }), std::vector{flushOf(home.path("file"))})
            << what;
    };
    test::inChildProcess([&] {
        ASSERT_NE(::personality(UNAME26), -1); // the system calls itself 2.6
        expectEach("a system whose flush of a whole file system tells no failure");
    });
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    const auto memory = home.file("meminfo");
    test::inChildProcess([&] {
        test::useOwnMountTable();
        test::bindMount(memory.c_str(), "/proc/meminfo");
        for (const auto& [dirty, writeback] : {std::pair(200'000, 100'000), std::pair(300'000, 0)}) {
            home.file("meminfo", "MemTotal:   1000000 kB\nDirty:   " + std::to_string(dirty)
                                     + " kB\nWriteback:   " + std::to_string(writeback) + " kB\n");
            expectEach("much that other programs have written");
        }
        home.file("meminfo", "MemTotal:   1000000 kB\nDirty:   200000 kB\nWriteback:   40000 kB\n");
        Barrier barrier(openPath(home.path()));
        EXPECT_TRUE(barrier.keepsOrder());

        test::mountTmpfs(home.folder("other").c_str());
        home.folder("other/to");
        home.folder("other/from");
        barrier.add(file.get());
        barrier.addMove(hold(home.path("other/from")), hold(home.path("other/to")));
        EXPECT_FALSE(barrier.keepsOrder()) << "two file systems";
        EXPECT_EQ(flushesOf([&] { EXPECT_TRUE(barrier.pass()); }),
                  (std::vector{flushOf(home.path(), true), flushOf(home.path("other/to")),
                               flushOf(home.path("other/from"))}));
    });
}

TEST(Barrier, AFolderThatMayNotBeReadIsFlushedThroughTheOther) {
    test::inChildProcess([] {
        if (test::isRoot()) // who may read all
            test::becomeOtherUser();
        const TemporaryFolder home;
        home.folder("open");
        home.folder("closed");
        const auto open = hold(home.path("open"));
        const auto closed = hold(home.path("closed"));
        const test::Restricted unreadable(home.path("closed"), 0300);
        Barrier barrier;
        barrier.addMove(closed, open);
        EXPECT_EQ(flushesOf([&] { EXPECT_TRUE(barrier.pass()); }),
                  (std::vector{flushOf(home.path("open")), flushOf(home.path("open"), true)}));
        barrier.addMove(closed, closed);
        EXPECT_EQ(barrier.pass(), std::unexpected(EACCES));
    });
}

TEST(Barrier, WithoutOrderALineIsWrittenOnlyWhenTheMovesAreOnTheDisk) {
    test::JournalScene scene;
    ASSERT_TRUE(scene.store.append(test::trashedEntry("first")));
    const auto before = scene.content();
    const TemporaryFolder home;
    const auto entry = test::trashedEntry("second");
    for (const int error : {EIO, 0}) {
        Barrier barrier;
        barrier.add(hold(home.path()));
        const FlushHook hook([&](const Flush& flush) {
            if (flush != flushOf(home.path()))
                return 0;
            EXPECT_EQ(scene.content(), before);
            return error;
        });
        EXPECT_EQ(scene.store.append({&entry, 1}, barrier).has_value(), error == 0);
        EXPECT_EQ(scene.content() == before, error != 0);
    }
}

TEST(Barrier, WithTheJournalOnAnotherFileSystemTheMovesComeFirst) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    test::inChildProcess([] {
        test::useOwnMountTable();
        MoverHome home;
        test::mountTmpfs(home.folder(".local/share/Ostrevo Orbel").c_str());
        home.trasher.trash = std::make_shared<LiveTrash>(home.trash());
        const PutBack putBack(home.policy, home.journal, std::make_shared<test::FakeRestore>());
        const auto items = home.files({"a/one", "a/two"});
        const auto expectEnd = [&](std::vector<Flush> flushes, const std::string& to,
                                   const std::string& from) {
            ASSERT_GT(flushes.size(), 3);
            flushes.erase(flushes.begin(), flushes.end() - 3);
            EXPECT_EQ(flushes, (std::vector{flushOf(to), flushOf(from), flushOf(home.journal->path())}));
        };
        expectEnd(flushesOf([&] { EXPECT_EQ(home.run(items).moved.size(), 2); }), home.trash() + "/files",
                  home.path("a"));
        expectEnd(flushesOf([&] { EXPECT_TRUE(putBack.putBackLast().results.at(1).restored); }),
                  home.path("a"), home.trash() + "/files");
    });
}

/// What is flushed while `work` runs, each as its path in `home`: how it is called when it is flushed, with
/// "*" for names that are new each time.
std::vector<std::string> namesOfFlushes(const TemporaryFolder& home, const std::function<void()>& work) {
    std::vector<std::string> names;
    const FlushHook hook([&](const Flush& flush) {
        std::string name = flush.file == FileIdentity::of(home.path()) ? "." : "?";
        for (const auto& entry : fs::recursive_directory_iterator(home.path()))
            if (FileIdentity::of(entry.path().string()) == flush.file)
                name = entry.path().lexically_relative(home.path());
        if (name.contains("/intents/"))
            name = std::string(parentPath(name)) + "/*";
        names.push_back(name + (flush.isAll ? " and all" : ""));
        return 0;
    });
    work();
    return names;
}

TEST(Barrier, WithoutOrderAMoveAndItsWayBackFlushAllThatTheyMake) {
    SKIP_WHERE_FOLDERS_DO_NOT_KEEP_MOVES();
    test::inChildProcess([] {
        ASSERT_NE(::personality(UNAME26), -1); // no flush of a whole file system is trusted then
        MoverHome home;
        home.trasher.trash = std::make_shared<LiveTrash>(home.trash());
        const PutBack putBack(home.policy, home.journal, std::make_shared<LiveRestore>());
        const auto items = home.files({"a/one"});
        const std::string data = ".local/share/Ostrevo Orbel";
        const std::string trash = ".local/share/Trash";
        const auto journal = data + "/journal.jsonl";
        EXPECT_EQ(namesOfFlushes(home, [&] { EXPECT_EQ(home.run(items).moved.size(), 1); }),
                  (std::vector<std::string>{// the new folders
                                            ".", ".local", ".local/share", data,
                                            // the new files, then what the folders hold
                                            journal, data, trash + "/info/one.trashinfo", data + "/intents/*",
                                            data + "/intents", ".local/share", trash, trash + "/info",
                                            // the move, then its line
                                            trash + "/files", "a", journal}));
        EXPECT_EQ(namesOfFlushes(home, [&] { EXPECT_TRUE(putBack.putBackLast().results.at(0).restored); }),
                  (std::vector<std::string>{journal, data + "/intents/*", data + "/intents", //
                                            "a", trash + "/files", journal}));
        EXPECT_EQ(namesOfFlushes(home, [&] { EXPECT_TRUE(home.journal->preflight()); }),
                  std::vector{journal});
    });
}

TEST(Barrier, SettlingMakesAMoveLastWhetherItsLineIsThereOrNot) {
    SKIP_WHERE_FOLDERS_DO_NOT_KEEP_MOVES();
    test::inChildProcess([] {
        ASSERT_NE(::personality(UNAME26), -1);
        test::JournalScene scene;
        const auto flushesOfSettling = [&](bool isRecorded, bool isFolderLeft) {
            const auto intent = scene.beginToTrash("item");
            scene.leaveBehind({intent});
            test::move(intent);
            EXPECT_TRUE(!isRecorded || scene.store.append(intent.entry));
            if (!isFolderLeft)
                fs::remove(parentPath(intent.sourcePath));
            return namesOfFlushes(scene.home,
                                  [&] { EXPECT_TRUE(settleIntents(scene.store).failures.empty()); });
        };
        EXPECT_EQ(flushesOfSettling(true, true), (std::vector<std::string>{"trash/files", "documents"}));
        fs::remove(scene.home.path("trash/files/item"));
        EXPECT_EQ(flushesOfSettling(false, true),
                  (std::vector<std::string>{"trash/files", "documents", "data/journal.jsonl"}));
        fs::remove(scene.home.path("trash/files/item"));
        EXPECT_EQ(flushesOfSettling(false, false),
                  (std::vector<std::string>{"trash/files", "data/journal.jsonl"}));
    });
}

TEST(Barrier, AGroupOfMovesTakesTwoFlushes) {
    MoverHome home;
    SKIP_WHERE_ONE_FLUSH_IS_NOT_ENOUGH(home.path());
    home.trasher.trash = std::make_shared<LiveTrash>(home.trash());
    ASSERT_EQ(home.run(home.files({"a/first"})).moved.size(), 1) << "makes the Trash and the journal";
    const PutBack putBack(home.policy, home.journal, std::make_shared<test::FakeRestore>());
    std::vector<std::string> names;
    for (int i = 0; i < 100; ++i)
        names.push_back("b/" + std::to_string(i));
    for (const auto& group : {std::vector<std::string>{"b/one"}, names}) {
        const auto items = home.files(group);
        ::sync(); // much that is unwritten makes a flush of the file system dearer than several
        // Two, and another two for each half second that a slow machine takes.
        const auto most = group.size() == 1 ? 2u : 6u;
        EXPECT_LE(flushesOf([&] { EXPECT_EQ(home.run(items).moved.size(), group.size()); }).size(), most);
        EXPECT_LE(flushesOf([&] { EXPECT_TRUE(putBack.putBackLast().results.at(0).restored); }).size(), most);
    }
}

} // namespace
} // namespace orbel
