#include "Platform/Conventions.h"
#include "Safety/FileStamp.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/Walker.h"
#include "Support/ChildProcess.h"
#include "Support/OpenHook.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace orbel {
namespace {

using test::blocksOf;
using test::TemporaryFolder;
using namespace std::chrono_literals;

FileTree walked(const std::string& root, std::optional<int> workers = std::nullopt) {
    const ScanCancellation nobodyCancels;
    auto result = Walker::walk(root, workers, nobodyCancels, 1s, nullptr);
    EXPECT_FALSE(result.cancelled);
    return std::move(result.tree);
}

NodeIndex nodeAt(const FileTree& tree, const std::string& path) {
    const auto node = tree.index(path, PathCanonicalizer(""));
    EXPECT_TRUE(node) << path << " is not in the tree";
    return node.value_or(0);
}

TEST(Walker, MeasuresEveryTypeOfEntryWithoutFollowingLinks) {
    const TemporaryFolder home;
    const auto large = home.file("real/large", 300'000);
    home.file("Tool.app/Contents/data", 10'000);
    home.link("shortcut", home.path("real"));
    home.link("dangling", "/nowhere/at/all");
    const auto sparse = home.file("sparse", 0);
    ASSERT_EQ(::truncate(sparse.c_str(), 1'000'000'000), 0);
    ASSERT_EQ(::mkfifo(home.path("pipe").c_str(), 0600), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s", home.path("socket").c_str());
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(socket);

    const FileTree tree = walked(home.path() + "/");
    EXPECT_EQ(tree.rootPath, home.path());
    EXPECT_EQ(tree.requestedRootPath, home.path() + "/");
    EXPECT_EQ(tree.count(), 11);
    EXPECT_EQ(tree.unreadableCount, 0);

    const auto file = nodeAt(tree, large);
    EXPECT_EQ(tree.allocated(file), blocksOf(large));
    EXPECT_EQ(tree.logical(file), 300'000);
    EXPECT_TRUE(tree.matchesScan(file, *FileStamp::of(large)));
    const auto folder = nodeAt(tree, home.path("real"));
    EXPECT_TRUE(tree.matchesScan(folder, *FileStamp::of(home.path("real"))));
    EXPECT_TRUE(tree.matchesScan(0, *FileStamp::of(home.path())));

    const auto shortcut = nodeAt(tree, home.path("shortcut"));
    EXPECT_EQ(tree.flags(shortcut), NodeFlags::symlink);
    EXPECT_EQ(tree.allocated(shortcut), blocksOf(home.path("shortcut")));
    EXPECT_TRUE(tree.children(shortcut).empty());
    EXPECT_EQ(tree.flags(nodeAt(tree, home.path("dangling"))), NodeFlags::symlink);
    EXPECT_EQ(tree.flags(nodeAt(tree, home.path("Tool.app"))), NodeFlags::folder | NodeFlags::package);
    const auto hole = nodeAt(tree, sparse);
    EXPECT_EQ(tree.logical(hole), 1'000'000'000);
    EXPECT_EQ(tree.allocated(hole), blocksOf(sparse));
    for (const auto* name : {"pipe", "socket"})
        EXPECT_EQ(tree.flags(nodeAt(tree, home.path(name))), NodeFlags{}) << name;
}

TEST(Walker, TakesAnyRoot) {
    const TemporaryFolder home;
    const auto file = home.file("movie.mp4", 50'000);
    const FileTree single = walked(file);
    ASSERT_EQ(single.count(), 1);
    EXPECT_EQ(single.allocated(0), blocksOf(file));
    EXPECT_EQ(single.kind(0), FileKind::video);
    EXPECT_EQ(single.name(0), "movie.mp4");

    EXPECT_EQ(walked(home.path("missing")).count(), 0);
    EXPECT_EQ(walked("").count(), 0);

    const auto link = home.link("link", home.folder("real"));
    EXPECT_EQ(walked(link).rootPath, home.path("real")) << "a root is resolved, unlike what lies below it";
    EXPECT_EQ(walked(home.folder("empty")).count(), 1);
}

TEST(Walker, KeepsNamesAsTheyAre) {
    const TemporaryFolder home;
    const std::vector<std::string> names{"line\nfeed",
                                         "bad\xFF\xFEutf8",
                                         std::string(255, 'n'),
                                         " ",
                                         "\\",
                                         "-rf",
                                         "\xE2\x80\xAE"
                                         "backwards"};
    for (const auto& name : names)
        home.file(name, 1000);
    const FileTree tree = walked(home.path());
    EXPECT_EQ(tree.count(), names.size() + 1);
    for (const auto& name : names)
        EXPECT_EQ(tree.nameBytes(nodeAt(tree, home.path(name))), name);
}

TEST(Walker, MeasuresPathsLongerThanTheSystemTakes) {
    // 60 levels of 255 bytes: four times the longest path that a system call accepts.
    const TemporaryFolder home;
    constexpr int levels = 60;
    const std::string name(255, 'd');
    int folder = ::open(home.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < levels; ++i) {
        ASSERT_EQ(::mkdirat(folder, name.c_str(), 0700), 0);
        // A second folder on each level keeps the level above open while the walk goes down.
        ASSERT_EQ(::mkdirat(folder, "sibling", 0700), 0);
        ASSERT_EQ(::mkdirat(folder, "sibling/inside", 0700), 0);
        const int inner = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(folder);
        folder = inner;
    }
    ::close(::openat(folder, "bottom", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    ::close(folder);

    const FileTree tree = walked(home.path());
    EXPECT_EQ(tree.count(), 1 + levels * 3 + 1);
    EXPECT_EQ(tree.unreadableCount, 0);

    // With hardly any descriptor to spare, folders are opened along their path instead.
    EXPECT_TRUE(test::inChildProcess([&] {
        const rlimit few{.rlim_cur = 40, .rlim_max = 40};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        const FileTree again = walked(home.path(), 4);
        EXPECT_EQ(again.count(), tree.count());
        EXPECT_EQ(again.unreadableCount, 0);
    }));
}

TEST(Walker, FlagsFoldersThatItMayNotRead) {
    const TemporaryFolder home;
    home.file("open/file", 1000);
    home.file("closed/file", 1000);
    home.file("listable/file", 1000);
    ASSERT_EQ(::chmod(home.path("closed").c_str(), 0), 0);
    ASSERT_EQ(::chmod(home.path("listable").c_str(), 0444), 0); // names are readable, entries are not
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    EXPECT_TRUE(test::inChildProcess([&] {
        if (test::isRoot())
            test::becomeOtherUser();
        const FileTree tree = walked(home.path());
        const auto closed = nodeAt(tree, home.path("closed"));
        EXPECT_EQ(tree.flags(closed), NodeFlags::folder | NodeFlags::unreadable);
        EXPECT_TRUE(tree.children(closed).empty());
        EXPECT_TRUE(tree.matchesScan(closed, *FileStamp::of(home.path("closed"))))
            << "what cannot be listed is measured all the same";
        EXPECT_TRUE(tree.children(nodeAt(tree, home.path("listable"))).empty());
        EXPECT_EQ(tree.unreadableCount, 2);
        EXPECT_EQ(tree.unreadableIn(0), 2);
        EXPECT_EQ(tree.unreadableIn(nodeAt(tree, home.path("listable"))), 1);
        EXPECT_EQ(tree.count(), 5);

        const FileTree root = walked(home.path("closed"));
        ASSERT_EQ(root.count(), 1);
        EXPECT_TRUE(root.flags(0).contains(NodeFlags::unreadable));
        EXPECT_EQ(root.unreadableCount, 1);
    }));
    ASSERT_EQ(::chmod(home.path("closed").c_str(), 0700), 0);
    ASSERT_EQ(::chmod(home.path("listable").c_str(), 0700), 0);
}

TEST(Walker, DoesNotEnterOtherVolumesOrBindMounts) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    const TemporaryFolder home;
    home.file("real/large", 300'000);
    const auto file = home.file("later", 1000);
    home.hardLink("later still", "later");
    const auto disk = home.folder("inner/a disk");
    const auto view = home.folder("inner/view");
    const auto fileView = home.file("inner/fileView", 500'000);
    EXPECT_TRUE(test::inChildProcess([&] {
        test::useOwnMountTable();
        const FileTree before = walked(home.path());
        const auto hiddenBytes = blocksOf(fileView);
        test::mountTmpfs(disk.c_str());
        test::bindMount(home.path("real").c_str(), view.c_str());
        test::bindMount(file.c_str(), fileView.c_str());
        home.file("inner/a disk/hidden", 4000);

        const FileTree tree = walked(home.path());
        EXPECT_EQ(tree.otherVolumeCount, 3);
        for (const auto& path : {disk, view, fileView}) {
            const auto node = nodeAt(tree, path);
            EXPECT_TRUE(tree.flags(node).contains(NodeFlags::otherVolume)) << path;
            EXPECT_EQ(tree.allocated(node), 0) << path;
            EXPECT_TRUE(tree.children(node).empty()) << path;
        }
        EXPECT_EQ(tree.count(), before.count());
        EXPECT_EQ(tree.allocated(0), before.allocated(0) - hiddenBytes);
        EXPECT_EQ(walked(disk).count(), 2) << "a volume that is asked for itself is measured";

        // A view that was met while the file had no further link is none of its links later on either.
        home.file("single", 2000);
        home.folder("new");
        test::bindMount(home.path("single").c_str(), home.file("a view").c_str());
        const FileTree single = walked(home.path());
        home.hardLink("new/link", "single");
        const auto spliced = single.spliced(nodeAt(single, home.path("new")), walked(home.path("new")));
        EXPECT_EQ(spliced.allocated(0), walked(home.path()).allocated(0));
        EXPECT_EQ(spliced.allocated(nodeAt(spliced, home.path("a view"))), 0);
    }));
}

TEST(Walker, TellsFilesOfOneNumberApartByTheirDevices) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    const TemporaryFolder home;
    for (const auto* folder : {"one", "two", "top", "all"})
        home.folder(folder);
    EXPECT_TRUE(test::inChildProcess([&] {
        test::useOwnMountTable();
        for (const auto* disk : {"one", "two", "top"})
            test::mountTmpfs(home.path(disk).c_str());
        const auto small = home.file("one/folder/small", 5'000);
        home.hardLink("one/folder/small too", "one/folder/small");
        const auto large = home.file("two/folder/large", 90'000);
        home.hardLink("two/folder/large too", "two/folder/large");
        ASSERT_EQ(FileIdentity::of(small)->inode, FileIdentity::of(large)->inode) << "the case to be tested";
        test::mountOverlay(home.path("one") + ":" + home.path("two"), home.folder("top/upper"),
                           home.folder("top/work"), home.path("all"));

        FileTree tree = walked(home.path("all"));
        const auto both = blocksOf(small) + blocksOf(large);
        EXPECT_EQ(tree.allocated(0), both);
        for (const auto* name : {"small", "small too", "large", "large too"}) {
            const auto path = home.path(std::string("all/folder/") + name);
            EXPECT_TRUE(tree.matchesScan(nodeAt(tree, path), *FileStamp::of(path))) << name;
        }
        const auto folder = home.path("all/folder");
        const FileTree again = tree.spliced(nodeAt(tree, folder), walked(folder));
        EXPECT_EQ(again.allocated(0), both);
        EXPECT_EQ(again.hardLinkMembers, tree.hardLinkMembers);
        const auto gone = nodeAt(tree, folder + "/large");
        tree.remove(std::span(&gone, 1));
        EXPECT_EQ(tree.allocated(0), both) << "the other link has them now";
    }));
}

TEST(Walker, LeavesOutFoldersThatVanishBeforeTheyAreListed) {
    const TemporaryFolder home;
    home.file("root/keep/file", 10'000);
    for (const auto* name : {"root/one", "root/two", "root/three", "root/keep/four"})
        home.folder(name);
    const auto removeBefore = [&](std::string_view opened, const std::vector<std::string>& gone) {
        return [=, &home](std::string_view name) {
            if (name.ends_with(opened)) {
                for (const auto& folder : gone)
                    ::rmdir(home.path(folder).c_str());
            }
            return 0;
        };
    };
    {
        const test::OpenHook hook(removeBefore("keep", {"root/one", "root/three"}));
        const FileTree first = walked(home.path("root"), 1);
        EXPECT_EQ(first.unreadableCount, 0);
    }
    {
        const test::OpenHook hook(removeBefore("two", {"root/two"}));
        const FileTree tree = walked(home.path("root"));
        EXPECT_EQ(tree.unreadableCount, 0);
        EXPECT_EQ(tree.count(), 4);
        EXPECT_EQ(test::childNames(tree, 0), std::vector<std::string>{"keep"});
        EXPECT_EQ(tree.allocated(0), blocksOf(home.path("root/keep/file")));
        EXPECT_TRUE(tree.flags(nodeAt(tree, home.path("root/keep/four"))).contains(NodeFlags::folder));
    }
    home.folder("brief");
    int opened = 0;
    const test::OpenHook hook([&](std::string_view name) {
        if (name.ends_with("/brief") && ++opened == 2)
            ::rmdir(home.path("brief").c_str());
        return 0;
    });
    EXPECT_EQ(walked(home.path("brief")).count(), 0) << "a root is gone like one that was never there";
}

TEST(Walker, WaitsForDescriptors) {
    const TemporaryFolder home;
    home.file("a/b/file", 10'000);
    std::atomic<int> refusals = 4;
    const test::OpenHook hook([&](std::string_view name) {
        const bool isListed = name == "a" || name == "b" || name == home.path();
        return isListed && refusals-- > 0 ? (refusals % 2 == 0 ? EMFILE : ENFILE) : 0;
    });
    const FileTree tree = walked(home.path());
    EXPECT_LT(refusals, 0);
    EXPECT_EQ(tree.count(), 4);
    EXPECT_EQ(tree.unreadableCount, 0);
}

TEST(Walker, KnowsTimesThatNanosecondsCannotReach) {
    const TemporaryFolder home;
    const auto file = home.file("folder/file", 1000);
    const auto folder = home.path("folder");
    for (const std::int64_t seconds :
         {std::int64_t{10'413'792'000}, std::int64_t{9'223'372'036}}) { // 2300, 2262
        const timespec time{.tv_sec = seconds, .tv_nsec = 900'000'000};
        for (const auto& path : {file, folder}) {
            const std::array both{time, time};
            ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), both.data(), 0), 0);
        }
        struct stat kept {};
        if (::lstat(file.c_str(), &kept) != 0 || kept.st_mtim.tv_sec != seconds)
            GTEST_SKIP() << "this file system does not keep such a time";
        const FileTree tree = walked(folder);
        EXPECT_TRUE(tree.matchesScan(0, *FileStamp::of(folder)));
        EXPECT_TRUE(tree.matchesScan(1, *FileStamp::of(file)));
        EXPECT_EQ(tree.modifiedMinutes[0], seconds / 60);
        EXPECT_EQ(walked(file).modifiedMinutes[0], seconds / 60);
    }
}

TEST(Walker, NumbersNodesTheSameWhateverTheThreadsDo) {
    const TemporaryFolder home;
    for (int a = 0; a < 12; ++a) {
        for (int b = 0; b < 12; ++b) {
            const auto folder = std::to_string(a) + "/" + std::to_string(b) + "/deep/er";
            for (int c = 0; c < 6; ++c)
                home.file(folder + "/file" + std::to_string(c), static_cast<std::size_t>(a * 5000));
        }
    }
    home.hardLink("0/again", "3/3/deep/er/file0");
    const FileTree one = walked(home.path(), 1);
    EXPECT_EQ(one.count(), 1 + 12 + 12 * 12 * 9 + 1);
    for (const int workers : {2, 16, 64}) {
        const FileTree many = walked(home.path(), workers);
        EXPECT_EQ(many.parentIndex, one.parentIndex);
        EXPECT_EQ(many.names, one.names);
        EXPECT_EQ(many.allocatedBytes, one.allocatedBytes);
        EXPECT_EQ(many.modifiedMinutes, one.modifiedMinutes);
        EXPECT_EQ(many.inodes, one.inodes);
        EXPECT_EQ(many.childList, one.childList);
        EXPECT_EQ(many.hardLinkMembers, one.hardLinkMembers);
    }
    for (std::size_t i = 1; i < one.count(); ++i)
        ASSERT_LT(one.parentIndex[i], i);
}

/// The threads of this process that walk now.
int walkingThreads() {
    int count = 0;
    DIR* const threads = ::opendir("/proc/self/task"); // not by openat(), which is hooked
    while (const dirent* const thread = ::readdir(threads)) {
        const auto name = readFile("/proc/self/task/" + std::string(thread->d_name) + "/comm");
        count += name && name->starts_with("orbel.walker.") ? 1 : 0;
    }
    ::closedir(threads);
    return count;
}

TEST(Walker, TakesAsManyThreadsAsItMayForAWideTree) {
    const TemporaryFolder home;
    for (int i = 0; i < 200; ++i)
        home.folder("wide/" + std::to_string(i));
    for (const std::optional<int> workers : {std::optional<int>(), std::optional<int>(3)}) {
        const int expected = workers.value_or(platform::conventions().defaultWalkerWorkers);
        // No folder below the root is opened before all threads are there, or are certain not to come.
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        int most = 0;
        const test::OpenHook hook([&](std::string_view name) {
            while (name != home.path("wide") && most < expected
                   && std::chrono::steady_clock::now() < deadline)
                most = std::max(most, walkingThreads());
            return 0;
        });
        EXPECT_EQ(walked(home.path("wide"), workers).count(), 201);
        EXPECT_EQ(most, expected);
    }
    EXPECT_GE(platform::conventions().defaultWalkerWorkers, 8) << "a cold disk wants many requests in flight";
}

TEST(Walker, SpreadsLargeFoldersOverSeveralBlocksOfMemory) {
    const TemporaryFolder home;
    constexpr std::size_t files = 40'000; // more than two blocks of nodes
    const int folder = ::open(home.folder("big").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (std::size_t i = 0; i < files; ++i) {
        const auto name = "f" + std::to_string(i);
        const bool isFolder = i % 5000 == 0;
        ASSERT_EQ(isFolder ? ::mkdirat(folder, name.c_str(), 0700)
                           : ::mknodat(folder, name.c_str(), S_IFREG | 0600, 0),
                  0);
    }
    ::close(folder);
    home.file("big/f5000/last", 10'000);
    const FileTree tree = walked(home.path());
    EXPECT_EQ(tree.count(), files + 3);
    EXPECT_EQ(tree.children(nodeAt(tree, home.path("big"))).size(), files);
    EXPECT_EQ(tree.allocated(nodeAt(tree, home.path("big/f5000"))), blocksOf(home.path("big/f5000/last")));
    EXPECT_EQ(tree.name(nodeAt(tree, home.path("big/f39999"))), "f39999");
}

TEST(Walker, StopsWhenCancelledAndKeepsWhatItFound) {
    const TemporaryFolder home;
    for (int i = 0; i < 300; ++i)
        home.file(std::to_string(i) + "/inner/file", 1000);
    ScanCancellation cancellation;
    cancellation.cancel();
    auto stopped = Walker::walk(home.path(), std::nullopt, cancellation, 1s, nullptr);
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_EQ(stopped.tree.count(), 1);

    ScanCancellation midway;
    const auto partial = Walker::walk("/usr", 2, midway, 1ms, [&](const ScanProgress& progress) {
        if (progress.entries > 0)
            midway.cancel();
    });
    EXPECT_TRUE(partial.cancelled);
    const FileTree& tree = partial.tree;
    ASSERT_GE(tree.count(), 1);
    for (std::size_t i = 1; i < tree.count(); ++i) {
        ASSERT_LT(tree.parentIndex[i], i);
        ASSERT_TRUE(tree.isFolder(tree.parentIndex[i]));
    }
    EXPECT_EQ(tree.descendantCount(0), tree.count() - 1);
}

TEST(Walker, ReportsProgressOfWhatLiesUnderTheRoot) {
    const TemporaryFolder home;
    home.file("small/a", 5'000);
    home.file("large/deep/b", 200'000);
    const auto file = home.file("middle", 50'000);
    home.hardLink("large/linked", "middle");
    const ScanCancellation nobodyCancels;
    ScanProgress last;
    Walker::walk(home.path(), 3, nobodyCancels, 1s, [&](const ScanProgress& progress) { last = progress; });
    EXPECT_EQ(last.entries, 7);
    EXPECT_EQ(last.bytes, blocksOf(home.path("small/a")) + blocksOf(home.path("large/deep/b")))
        << "hard-linked files are left to the end";
    ASSERT_EQ(last.topLevel.size(), 3);
    EXPECT_EQ(last.topLevel[0].name, "large");
    EXPECT_EQ(last.topLevel[0].bytes, blocksOf(home.path("large/deep/b")));
    EXPECT_TRUE(last.topLevel[0].isFolder);
    EXPECT_EQ(last.topLevel[2].name, "middle");
    EXPECT_FALSE(last.topLevel[2].isFolder);
    EXPECT_GT(blocksOf(file), 0);
}

} // namespace
} // namespace orbel
