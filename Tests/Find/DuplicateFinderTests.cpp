#include "Find/ContentComparison.h"
#include "Find/DuplicateFinder.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/TreeScanner.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"
#include "Util/PathText.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <random>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;
using Names = std::vector<std::string>;

FileTree scanned(const std::string& root) {
    const ScanCancellation nobodyCancels;
    return TreeScanner::scan(root, 2, nobodyCancels, nullptr).tree;
}

/// The files of each group, relative to the home, sorted within the group.
std::vector<Names> namesOf(const std::vector<DuplicateGroup>& groups, const TemporaryFolder& home) {
    std::vector<Names> all;
    for (const auto& group : groups) {
        auto& names = all.emplace_back();
        for (const auto& file : group.files)
            names.push_back(file.path.substr(home.path().size() + 1));
        std::ranges::sort(names);
    }
    return all;
}

std::vector<Names> found(const TemporaryFolder& home, std::uint64_t minimumBytes = 1) {
    return namesOf(DuplicateFinder{minimumBytes}.run(scanned(home.path()), home.path()), home);
}

std::vector<DuplicateFile> stamped(const Names& paths) {
    std::vector<DuplicateFile> files;
    for (const auto& path : paths)
        files.push_back({.path = path, .stamp = FileStamp::of(path).value()});
    return files;
}

/// `bytes` of text with one byte changed at each of `places`.
std::string text(std::size_t bytes, std::initializer_list<std::size_t> places = {}) {
    std::string text(bytes, 'a');
    for (std::size_t i = 0; i < bytes; i += 7)
        text[i] = static_cast<char>('a' + i % 23);
    for (const std::size_t place : places)
        text[place] = '#';
    return text;
}

TEST(DuplicateFinder, LooksOnlyWhereTheUserKeepsFiles) {
    const TemporaryFolder home;
    const auto content = text(100);
    for (const auto* place :
         {"a", "docs/Library/b", "Libraryx/c", "too/deep/for/none/d", ".hidden", ".config/e", "docs/.git/f",
          "docs/node_modules/g", "Library/h", "docs/Tool.app/i", "docs/All.photoslibrary/j"})
        home.file(place, content);
    home.file("small1", text(99));
    home.file("small2", text(99));
    home.hardLink("linked", "a");
    home.link("symlink", home.path("a"));
    ASSERT_EQ(::mkfifo(home.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(found(home, 100),
              (std::vector<Names>{{"Libraryx/c", "a", "docs/Library/b", "too/deep/for/none/d"}}))
        << "of two hard links, the first in byte order stands for both";

    // A tree that begins inside the home, or above it, or beside it.
    const auto candidates = [&](const std::string& root) {
        return DuplicateFinder{100}.candidates(scanned(root), home.path()).size();
    };
    EXPECT_EQ(candidates(std::string(parentPath(home.path()))), 4);
    EXPECT_EQ(candidates(home.path("docs")), 1);
    EXPECT_EQ(candidates(home.path("docs/Library")), 1);
    EXPECT_EQ(candidates(home.path("Libraryx")), 1);
    for (const auto* closed :
         {".config", "docs/.git", "docs/node_modules", "Library", "docs/Tool.app", "docs/All.photoslibrary"})
        EXPECT_EQ(candidates(home.path(closed)), 0) << closed;
    const TemporaryFolder elsewhere;
    elsewhere.file("a", content);
    EXPECT_EQ(candidates(elsewhere.path()), 0);
    EXPECT_EQ(candidates(home.path("missing")), 0);

    test::TreeBuilder cloud(home.path());
    cloud.file(0, "here", 100);
    cloud.file(0, "in the cloud", 100, NodeFlags::dataless);
    EXPECT_EQ(DuplicateFinder{100}.candidates(cloud.build(), home.path()), std::vector<NodeIndex>{1});
}

TEST(DuplicateFinder, EveryByteDecides) {
    const TemporaryFolder home;
    constexpr auto chunk = ContentComparison::chunkBytes;
    for (const std::size_t bytes :
         std::vector<std::size_t>{1, 4096, 4097, 8192, 8193, chunk - 1, chunk, 3 * chunk}) {
        const auto folder = std::to_string(bytes);
        for (const auto* copy : {"/x", "/y", "/z"})
            home.file(folder + copy, text(bytes));
        home.file(folder + "/first", text(bytes, {0}));
        home.file(folder + "/last", text(bytes, {bytes - 1}));
        home.file(folder + "/middle", text(bytes, {bytes / 2}));
        // Of one byte, the last three are the same.
        const auto groups = found(home);
        const auto group = std::ranges::find_if(
            groups, [&](const Names& names) { return names.front().starts_with(folder + "/x"); });
        ASSERT_NE(group, groups.end()) << bytes;
        EXPECT_EQ(*group, (Names{folder + "/x", folder + "/y", folder + "/z"}));
        EXPECT_EQ(groups.size(), bytes == 1 ? 2 : 1) << bytes;
        fs::remove_all(home.path(folder));
    }
}

TEST(DuplicateFinder, OrdersGroupsByWhatTheyFreeAndTellsItsProgress) {
    const TemporaryFolder home;
    for (const auto* name : {"a1", "a2", "a3"})
        home.file(name, text(1000));
    for (const auto* name : {"b1", "b2"})
        home.file(name, text(1500));
    for (const auto* name : {"c1", "c2"})
        home.file(name, text(2000));
    home.file("other", text(1500, {700}));
    home.file("alone", text(1234));
    std::vector<DuplicateProgress> progress;
    const auto groups = DuplicateFinder{1}.run(scanned(home.path()), home.path(),
                                               [&](const auto& report) { progress.push_back(report); });
    EXPECT_EQ(namesOf(groups, home), (std::vector<Names>{{"c1", "c2"}, {"a1", "a2", "a3"}, {"b1", "b2"}}));
    EXPECT_EQ(groups[1].bytes, 1000);
    EXPECT_EQ(groups[1].removableBytes(), 2000);
    EXPECT_EQ(progress, (std::vector<DuplicateProgress>{
                            {0, 11'500, 0}, {4000, 11'500, 1}, {8500, 11'500, 2}, {11'500, 11'500, 3}}));
    const auto& file = groups[0].files[0];
    EXPECT_EQ(file.stamp, FileStamp::of(file.path));
    EXPECT_EQ(scanned(home.path()).path(file.index, PathCanonicalizer::shared()), file.path);
}

TEST(DuplicateFinder, SuggestsTheNewestThenTheShortestThenTheFirst) {
    const auto keep = [](std::vector<std::pair<std::string, std::int64_t>> copies) {
        std::vector<DuplicateFile> files;
        for (const auto& [path, nanos] : copies)
            files.push_back({.path = path, .stamp = {.identity = {}, .modifiedNanos = nanos}});
        return DuplicateFinder::suggestKeep(files);
    };
    EXPECT_EQ(keep({{"/a", 1}, {"/long/path", 2}, {"/b", -9}}), "/long/path");
    EXPECT_EQ(keep({{"/abc", 1}, {"/\u00E9\u00E9", 1}, {"/abcd", 1}}), "/\u00E9\u00E9")
        << "characters, not bytes";
    EXPECT_EQ(keep({{"/b", 1}, {"/c", 1}, {"/a", 1}}), "/a");
}

/// Files in a home whose contents are equal in part, and the groups among them told by holding all contents
/// at once.
class RandomHome {
public:
    explicit RandomHome(unsigned seed) : random_(seed) {
        static const Names folders{"", "a/", "a/b/", ".hidden/", "a/node_modules/", "Library/", "a/x.app/"};
        const std::size_t bytes[] = {5000, 9000, below(3) * ContentComparison::chunkBytes + 9000 + below(3)};
        const auto variants = 1 + below(14); // more than are told apart at once
        const auto count = 2 + below(60);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t size = bytes[below(3)];
            std::string content = text(size);
            if (below(3) > 0)
                content[below(2) == 0 ? 4500 : size / 2] = static_cast<char>('0' + below(variants));
            if (below(6) == 0)
                content[below(size)] = '!';
            const auto folder = folders[below(folders.size())];
            const auto name = folder + std::to_string(i);
            home.file(name, content);
            if (folder.empty() || folder == "a/" || folder == "a/b/")
                byContent_[content].push_back(name);
        }
    }

    /// By what they free, then by their files.
    std::vector<Names> groups() const {
        std::vector<std::pair<std::size_t, Names>> groups;
        for (auto [content, names] : byContent_) {
            std::ranges::sort(names);
            if (names.size() > 1)
                groups.emplace_back(content.size() * (names.size() - 1), names);
        }
        return inOrder(std::move(groups));
    }
    std::vector<Names> found() const {
        const auto result = DuplicateFinder{5000}.run(scanned(home.path()), home.path());
        EXPECT_TRUE(std::ranges::is_sorted(result, std::ranges::greater(), &DuplicateGroup::removableBytes));
        const auto names = namesOf(result, home);
        std::vector<std::pair<std::size_t, Names>> groups;
        for (std::size_t i = 0; i < result.size(); ++i)
            groups.emplace_back(result[i].removableBytes(), names[i]);
        return inOrder(std::move(groups));
    }

    TemporaryFolder home;

private:
    static std::vector<Names> inOrder(std::vector<std::pair<std::size_t, Names>> groups) {
        std::ranges::sort(groups);
        std::vector<Names> names;
        for (auto& group : groups)
            names.push_back(std::move(group.second));
        return names;
    }
    std::size_t below(std::size_t bound) { return random_() % bound; }

    std::mt19937 random_;
    std::map<std::string, Names> byContent_;
};

TEST(DuplicateFinder, FindsWhatComparingAllContentsFinds) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const RandomHome random(seed);
        EXPECT_EQ(random.found(), random.groups()) << "seed " << seed;
    }
}

TEST(DuplicateFinder, ClustersKeepTheirOrderHoweverFewFilesMayBeOpen) {
    const TemporaryFolder home;
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        Names paths;
        std::vector<std::string> contents;
        std::vector<ContentComparison::Cluster> expected;
        for (std::size_t i = 0; i < 40; ++i) {
            auto content = text(2 * ContentComparison::chunkBytes, {random() % 3 * 70'000});
            content[200'000] = static_cast<char>(random() % 12);
            paths.push_back(home.file(std::to_string(i), content));
            contents.push_back(content);
            const auto cluster = std::ranges::find_if(
                expected, [&](const auto& members) { return contents[members.front()] == content; });
            if (cluster == expected.end())
                expected.push_back({i});
            else
                cluster->push_back(i);
        }
        for (const std::size_t openFiles : {1, 100})
            EXPECT_EQ(ContentComparison(openFiles).clusters(stamped(paths), nullptr), expected);
    }
}

TEST(DuplicateFinder, ComparesTwoFilesByThemselves) {
    const TemporaryFolder home;
    const auto a = home.file("a", text(300'000));
    EXPECT_TRUE(DuplicateFinder::bytesEqual(a, home.file("b", text(300'000))));
    EXPECT_TRUE(DuplicateFinder::bytesEqual(home.file("empty1", 0), home.file("empty2", 0)));
    EXPECT_FALSE(DuplicateFinder::bytesEqual(a, home.file("c", text(300'000, {299'999}))));
    EXPECT_FALSE(DuplicateFinder::bytesEqual(a, home.file("longer", text(300'001))));
    EXPECT_FALSE(DuplicateFinder::bytesEqual(a, home.path("missing")));
    EXPECT_FALSE(DuplicateFinder::bytesEqual(a, home.link("link", a)));
    EXPECT_FALSE(DuplicateFinder::bytesEqual(home.folder("d"), home.folder("e")));
}

TEST(DuplicateFinder, CopesWithMoreFilesThanMayBeOpen) {
    const TemporaryFolder home;
    Names same;
    for (int i = 0; i < 120; ++i) {
        same.push_back("same" + std::to_string(i));
        home.file(same.back(), text(200'000));
    }
    home.file("near1", text(200'000, {150'000}));
    home.file("near2", text(200'000, {150'000}));
    std::ranges::sort(same);
    EXPECT_TRUE(test::inChildProcess([&] {
        const rlimit few{.rlim_cur = 60, .rlim_max = 60};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        EXPECT_EQ(found(home), (std::vector<Names>{same, {"near1", "near2"}}));
        // Nor does it depend on others leaving it the descriptors that it counts on.
        Names paths;
        for (const auto& name : same)
            paths.push_back(home.path(name));
        EXPECT_EQ(ContentComparison(1000).clusters(stamped(paths), nullptr).size(), 1);
    }));
}

TEST(DuplicateFinder, LeavesNoTraceOnWhatItReads) {
    const TemporaryFolder home;
    for (const auto* name : {"a", "b"}) {
        home.file(name, text(10'000));
        const timespec times[] = {{.tv_sec = 1000, .tv_nsec = 0}, {.tv_sec = 2000, .tv_nsec = 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, home.path(name).c_str(), times, 0), 0);
    }
    EXPECT_EQ(found(home).size(), 1);
    struct stat status {};
    ASSERT_EQ(::stat(home.path("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_atim.tv_sec, 1000);
}

TEST(DuplicateFinder, PassesOverWhatChangedSinceTheScan) {
    const TemporaryFolder home;
    for (const auto* name : {"a", "b", "grown", "replaced", "gone", "pipe", "link", "closed", "folder"})
        home.file(name, text(10'000));
    ASSERT_EQ(::chmod(home.path("closed").c_str(), 0), 0);
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    const FileTree tree = scanned(home.path());
    home.file("grown", text(10'001));
    home.file("new", text(10'000));
    fs::rename(home.path("new"), home.path("replaced"));
    for (const auto* name : {"gone", "pipe", "link", "folder"})
        fs::remove(home.path(name));
    ASSERT_EQ(::mkfifo(home.path("pipe").c_str(), 0600), 0);
    home.link("link", home.path("a"));
    home.folder("folder");
    EXPECT_TRUE(test::inChildProcess([&] {
        if (test::isRoot())
            test::becomeOtherUser();
        EXPECT_EQ(namesOf(DuplicateFinder{1}.run(tree, home.path()), home), (std::vector<Names>{{"a", "b"}}));
    }));
}

/// Changes the world at one moment of a search: when it asks, for the n-th time, whether it is cancelled.
template <class Change>
auto atPoll(int moment, Change change) {
    return [moment, change, polls = std::make_shared<std::atomic<int>>(0)] {
        return ++*polls == moment && change();
    };
}

TEST(DuplicateFinder, SurvivesWhateverHappensToAFileMeanwhile) {
    const std::vector<std::function<void(const std::string&)>> changes{
        [](const std::string& path) { fs::remove(path); },
        [](const std::string& path) {
            fs::remove(path);
            ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
        },
        [](const std::string& path) { fs::resize_file(path, 200'000); },
        [](const std::string& path) { std::ofstream(path, std::ios::in) << "other"; },
        [](const std::string& path) {
            std::ofstream(path + "~") << text(300'000, {150'000});
            fs::rename(path + "~", path);
        },
    };
    for (std::size_t change = 0; change < changes.size(); ++change) {
        int moment = 0;
        for (bool hasChanged = true; hasChanged;) {
            const TemporaryFolder home;
            for (const auto* name : {"a", "b", "c"})
                fs::last_write_time(home.file(name, text(300'000)), {});
            const FileTree tree = scanned(home.path());
            hasChanged = false;
            const auto isCancelled = atPoll(++moment, [&] {
                changes[change](home.path("b"));
                hasChanged = true;
                return false;
            });
            const auto groups = DuplicateFinder{1}.run(tree, home.path(), nullptr, isCancelled);
            ASSERT_EQ(groups.size(), 1) << change << " at " << moment;
            Names sure;
            for (const auto& file : groups[0].files) {
                // What was changed after it had been read is told by its stamp.
                const auto now = FileStamp::of(file.path);
                if (now && file.stamp.isUnchanged(*now))
                    sure.push_back(file.path);
            }
            std::ranges::sort(sure);
            EXPECT_EQ(sure.size(), hasChanged ? 2 : 3) << change << " at " << moment;
            EXPECT_TRUE(sure.front() == home.path("a") && sure.back() == home.path("c"));
        }
        EXPECT_GT(moment, 12) << "three files were sampled, and three chunks of each read";
    }
}

TEST(DuplicateFinder, CancelledItReturnsOnlyWhatItProved) {
    const TemporaryFolder home;
    for (const auto* name : {"a1", "a2", "a3"})
        home.file(name, text(400'000));
    for (const auto* name : {"b1", "b2"})
        home.file(name, text(300'000));
    const FileTree tree = scanned(home.path());
    const auto all = found(home);
    std::size_t most = 0;
    for (int moment = 1; moment < 40; ++moment) {
        std::atomic<bool> isCancelled = false;
        std::uint64_t compared = 0;
        const auto groups = namesOf(
            DuplicateFinder{1}.run(
                tree, home.path(), [&](const DuplicateProgress& report) { compared = report.bytesCompared; },
                [&, poll = atPoll(moment, [&] { return isCancelled = true; })] {
                    return isCancelled || poll();
                }),
            home);
        for (const auto& group : groups)
            EXPECT_TRUE(std::ranges::find(all, group) != all.end()) << moment;
        EXPECT_TRUE(groups.size() == all.size() || compared < 1'800'000) << moment;
        most = std::max(most, groups.size());
    }
    EXPECT_EQ(most, 2);
    EXPECT_TRUE(DuplicateFinder::identicalClusters(stamped({home.path("a1"), home.path("a2")}), [] {
                    return true;
                }).empty());
}

} // namespace
} // namespace orbel
