#include "Safety/FileStamp.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/Walker.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {
namespace {

using test::TemporaryFolder;
using namespace std::chrono_literals;

/// What a plain recursive walk, written without a thought for speed, says of a folder.
struct Recount {
    std::map<std::string, struct stat> entries; ///< by path, the root included
    std::set<std::string> unreadable;
    std::set<std::string> elsewhere;

    explicit Recount(const std::string& root) {
        ::lstat(root.c_str(), &entries[root]);
        device = entries[root].st_dev;
        list(root);
        sumUp(root);
    }

    /// Bytes of an entry, or of a folder with all below it, by path: every hard-linked file counts at its
    /// first one.
    std::map<std::string, std::uint64_t> totals;

private:
    void list(const std::string& folder) {
        DIR* const open = ::opendir(folder.c_str());
        if (open == nullptr) {
            unreadable.insert(folder);
            return;
        }
        while (const dirent* const entry = ::readdir(open)) {
            const std::string name = entry->d_name;
            if (name == "." || name == "..")
                continue;
            const std::string path = folder + "/" + name;
            struct stat status {};
            if (::lstat(path.c_str(), &status) != 0)
                continue;
            entries[path] = status;
            if (!S_ISDIR(status.st_mode))
                continue;
            if (status.st_dev != device)
                elsewhere.insert(path);
            else
                list(path);
        }
        ::closedir(open);
    }

    void sumUp(const std::string& root) {
        std::set<ino_t> seen;
        for (const auto& [path, status] : entries) { // a map goes through paths in byte order
            totals[path] += 0;
            if (S_ISDIR(status.st_mode) || (status.st_nlink > 1 && !seen.insert(status.st_ino).second))
                continue;
            for (std::string holder = path; holder.size() >= root.size(); holder.resize(holder.rfind('/')))
                totals[holder] += static_cast<std::uint64_t>(status.st_blocks) * 512;
        }
    }

    dev_t device = 0;
};

/// A folder filled by chance, the same for the same seed.
class RandomTree {
public:
    RandomTree(const std::string& root, unsigned seed) : random_(seed), folders_{root} {}

    /// The new names begin with numbers from `first` on.
    void grow(int entries, int first = 0) {
        for (int i = first; i < first + entries; ++i) {
            const std::string path = folders_[below(folders_.size())] + "/" + name(i);
            switch (below(10)) {
            case 0:
            case 1:
                if (::mkdir(path.c_str(), 0755) == 0)
                    folders_.push_back(path);
                break;
            case 2:
                EXPECT_EQ(::symlink(folders_[below(folders_.size())].c_str(), path.c_str()), 0);
                break;
            case 3:
                if (!files_.empty()) {
                    EXPECT_EQ(::link(files_[below(files_.size())].c_str(), path.c_str()), 0);
                    break;
                }
                [[fallthrough]];
            case 4:
                EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
                break;
            default:
                write(path);
            }
        }
    }

    /// Removes, adds and links at random in and below one of the folders.
    void change(const std::string& folder, int changes) {
        const auto isIn = [&](const std::string& path) { return path.starts_with(folder + "/"); };
        for (const auto& file : std::vector(files_)) {
            if (isIn(file) && below(3) == 0)
                ::unlink(file.c_str());
        }
        for (const auto& inner : std::vector(folders_)) {
            if (isIn(inner) && below(4) == 0)
                std::filesystem::remove_all(inner);
        }
        std::erase_if(files_, [](const auto& path) { return ::access(path.c_str(), F_OK) != 0; });
        std::erase_if(folders_, [](const auto& path) { return ::access(path.c_str(), F_OK) != 0; });
        const auto everywhere = std::exchange(folders_, {});
        std::ranges::copy_if(everywhere, std::back_inserter(folders_),
                             [&](const auto& path) { return path == folder || isIn(path); });
        grow(changes, 1'000'000);
        ::mkdir((folder + "/a.photoslibrary").c_str(), 0755);
        std::ranges::copy_if(everywhere, std::back_inserter(folders_), [&](const auto& path) {
            return std::ranges::find(folders_, path) == folders_.end();
        });
    }

    const std::string& someFolder() { return folders_[1 + below(folders_.size() - 1)]; }

private:
    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
    }

    std::string name(int number) {
        static const std::vector<std::string> endings{"",       ".mp4",   ".app",   "\xFF",
                                                      "\n.txt", " space", ".tar.gz"};
        const std::string padding(below(30) == 0 ? 200 : below(12), 'x');
        return std::to_string(number) + padding + endings[below(endings.size())];
    }

    void write(const std::string& path) {
        const int file = ::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        const std::string content(below(3) == 0 ? below(40'000) : below(300), 'c');
        EXPECT_EQ(::write(file, content.data(), content.size()), static_cast<ssize_t>(content.size()));
        if (below(8) == 0) {
            EXPECT_EQ(::ftruncate(file, static_cast<off_t>(below(10'000'000))), 0);
        }
        const timespec times[2]{
            {.tv_sec = 0, .tv_nsec = UTIME_OMIT},
            {.tv_sec = static_cast<time_t>(below(3'000'000'000)) - 1'000'000'000, .tv_nsec = 5}};
        EXPECT_EQ(::futimens(file, times), 0);
        ::close(file);
        files_.push_back(path);
    }

    std::mt19937 random_;
    std::vector<std::string> folders_;
    std::vector<std::string> files_;
};

void expectSame(const FileTree& tree, const Recount& recount) {
    ASSERT_EQ(tree.count(), recount.entries.size());
    EXPECT_EQ(tree.unreadableCount, recount.unreadable.size());
    EXPECT_EQ(tree.otherVolumeCount, recount.elsewhere.size());
    for (NodeIndex i = 0; i < tree.count(); ++i) {
        const std::string path = tree.walkedPath(i);
        ASSERT_TRUE(recount.entries.contains(path)) << path;
        const struct stat& status = recount.entries.at(path);
        SCOPED_TRACE(path);
        const bool isElsewhere = recount.elsewhere.contains(path);
        EXPECT_EQ(tree.flags(i).contains(NodeFlags::otherVolume), isElsewhere);
        EXPECT_EQ(tree.isFolder(i), S_ISDIR(status.st_mode));
        EXPECT_EQ(tree.flags(i).contains(NodeFlags::symlink), S_ISLNK(status.st_mode));
        EXPECT_EQ(tree.flags(i).contains(NodeFlags::unreadable), recount.unreadable.contains(path));
        EXPECT_EQ(tree.allocated(i), recount.totals.at(path));
        if (isElsewhere)
            continue; // what is mounted there is not touched
        EXPECT_EQ(tree.logical(i), static_cast<std::uint64_t>(status.st_size));
        EXPECT_EQ(tree.inode(i), status.st_ino);
        EXPECT_EQ(tree.linkCount(i), status.st_nlink);
        EXPECT_TRUE(tree.matchesScan(i, *FileStamp::of(path)));
    }
}

FileTree walkedTree(const std::string& root) {
    const ScanCancellation nobodyCancels;
    return Walker::walk(root, std::nullopt, nobodyCancels, 1s, nullptr).tree;
}

TEST(WalkerRandomTree, EqualsAnIndependentRecount) {
    for (const unsigned seed : {1U, 20U, 300U}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const TemporaryFolder home;
        RandomTree random(home.path(), seed);
        random.grow(3000);
        expectSame(walkedTree(home.path()), Recount(home.path()));
    }
}

struct Described {
    std::uint64_t bytes = 0;
    std::uint64_t logical = 0;
    std::uint64_t inode = 0;
    std::uint32_t descendants = 0;
    int flags = 0;
    FileKind kind = FileKind::other;
    bool isProtected = false;

    bool operator==(const Described&) const = default;
};

std::map<std::string, Described> described(const FileTree& tree) {
    std::map<std::string, Described> all;
    for (NodeIndex i = 0; i < tree.count(); ++i) {
        if (tree.isAttached(i))
            all[tree.walkedPath(i)] = {.bytes = tree.allocated(i),
                                       .logical = tree.logical(i),
                                       .inode = tree.inode(i),
                                       .descendants = tree.descendantCount(i),
                                       .flags = tree.flags(i).rawValue,
                                       .kind = tree.kind(i),
                                       .isProtected = tree.containsProtectedData(i)};
    }
    return all;
}

TEST(TreeSplicing, EqualsAWholeNewScanWhateverChangedInTheFolder) {
    for (const unsigned seed : {5U, 60U, 700U, 8000U}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const TemporaryFolder home;
        RandomTree random(home.path(), seed);
        random.grow(600);
        auto tree = walkedTree(home.path());
        for (int round = 0; round < 8; ++round) {
            const auto folder = random.someFolder();
            random.change(folder, 25);
            const auto node = tree.index(folder, PathCanonicalizer::shared());
            ASSERT_TRUE(node) << folder;
            tree = tree.spliced(*node, walkedTree(folder));
            const auto whole = walkedTree(home.path());
            EXPECT_EQ(described(tree), described(whole)) << folder;
            EXPECT_EQ(tree.count(), whole.count());
            for (NodeIndex i = 1; i < tree.count(); ++i)
                ASSERT_LT(tree.parentIndex[i], i);
        }
    }
}

TEST(TreeSplicing, KeepsWhatWasDetachedWhileItCanComeBack) {
    const TemporaryFolder home;
    for (const auto* path : {"in/a.mkv", "in/inner/b.mkv", "in/inner/c.mkv", "in/going/d.mkv", "out/e.mkv"})
        home.file(path, 20'000);
    home.hardLink("out/a again.mkv", "in/a.mkv");
    auto tree = walkedTree(home.path());
    const auto& canonicalizer = PathCanonicalizer::shared();
    const auto at = [&](const char* path) { return tree.index(home.path(path), canonicalizer); };
    const std::array gone{*at("in/a.mkv"), *at("in/inner/b.mkv"), *at("in/inner/c.mkv"),
                          *at("in/going/d.mkv"), *at("out/e.mkv")};
    tree.remove(gone);
    std::filesystem::remove(home.path("in/a.mkv"));
    std::filesystem::remove(home.path("in/inner/b.mkv"));
    std::filesystem::remove_all(home.path("in/going"));
    tree = tree.spliced(*at("in"), walkedTree(home.path("in")));
    EXPECT_FALSE(at("in/a.mkv"));
    EXPECT_TRUE(at("in/inner/c.mkv")) << "it never went, or came back without us";

    std::vector<NodeIndex> back;
    std::set<std::string> paths;
    for (const auto& [node, holder] : tree.detachedFrom) {
        back.push_back(node);
        paths.insert(tree.walkedPath(node));
    }
    EXPECT_EQ(paths, (std::set{home.path("in/a.mkv"), home.path("in/inner/b.mkv"), home.path("out/e.mkv")}));
    tree.restore(back);
    EXPECT_EQ(tree.allocated(*at("in/inner")), 2 * tree.allocated(*at("out/e.mkv")));
    EXPECT_EQ(tree.allocated(*at("out/a again.mkv")), 0U) << "the link that sorts first counts again";
    EXPECT_TRUE(tree.isAttached(*at("in/a.mkv")));
}

TEST(WalkerRandomTree, EqualsItWithClosedFoldersAndOtherVolumesInside) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting and changing the user need root";
    const TemporaryFolder home;
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    RandomTree random(home.path(), 4000);
    random.grow(3000);
    for (int i = 0; i < 5; ++i)
        ASSERT_EQ(::chmod(random.someFolder().c_str(), 0), 0);
    const auto disk = home.folder("a volume");
    EXPECT_TRUE(test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(disk.c_str());
        test::becomeOtherUser();
        expectSame(walkedTree(home.path()), Recount(home.path()));
    }));
}

} // namespace
} // namespace orbel
