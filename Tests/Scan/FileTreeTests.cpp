#include "Safety/FileStamp.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/FileTree.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using test::childNames;
using test::TreeBuilder;
using Names = std::vector<std::string>;

constexpr std::uint64_t megabyte = 1'000'000;

TEST(FileTree, SumsFoldersFromTheirChildrenAlone) {
    TreeBuilder builder;
    const auto a = builder.folder(0, "a");
    const auto b = builder.folder(a, "b");
    builder.file(b, "deep", 5);
    builder.file(a, "near", 3);
    builder.file(0, "top", 4);
    builder.tree.allocatedBytes[a] = 4096; // a folder's own blocks do not count
    const FileTree tree = builder.build();

    EXPECT_EQ(tree.allocated(0), 12);
    EXPECT_EQ(tree.allocated(a), 8);
    EXPECT_EQ(tree.descendantCount(0), 5);
    EXPECT_EQ(tree.descendantCount(b), 1);
    EXPECT_EQ(childNames(tree, 0), (Names{"a", "top"}));
}

TEST(FileTree, ListsTheLargestFirstAndEqualOnesByIndex) {
    TreeBuilder builder;
    Names expected{"largest"};
    for (int i = 0; i < 100; ++i)
        expected.push_back("same" + std::to_string(i));
    for (const auto& name : Names(expected.begin() + 1, expected.end()))
        builder.file(0, name, 7);
    builder.file(0, "largest", 8);
    EXPECT_EQ(childNames(builder.build(), 0), expected);
}

TEST(FileTree, OfOnlyARootIsEmpty) {
    const FileTree tree = TreeBuilder("/").build();
    EXPECT_EQ(tree.allocated(0), 0);
    EXPECT_TRUE(tree.children(0).empty());
    EXPECT_EQ(tree.name(0), "/");
    EXPECT_EQ(tree.parent(0), std::nullopt);
    EXPECT_EQ(TreeBuilder("/home/ann").build().name(0), "ann");
}

TEST(FileTree, CountsAHardLinkedFileOnceAtItsFirstPath) {
    TreeBuilder builder;
    const auto b = builder.folder(0, "b");
    const auto a = builder.folder(0, "a");
    const auto by = builder.hardLink(b, "y", megabyte, 77);
    const auto ax = builder.hardLink(a, "x", megabyte, 77);
    FileTree tree = builder.build();

    EXPECT_EQ(tree.allocated(ax), megabyte);
    EXPECT_EQ(tree.allocated(by), 0);
    EXPECT_TRUE(tree.flags(by).contains(NodeFlags::linkCountedElsewhere));
    EXPECT_EQ(tree.allocated(0), megabyte);

    tree.remove(std::array{ax});
    EXPECT_EQ(tree.allocated(by), megabyte);
    EXPECT_FALSE(tree.flags(by).contains(NodeFlags::linkCountedElsewhere));
    EXPECT_EQ(tree.allocated(a), 0);
    EXPECT_EQ(tree.allocated(0), megabyte);

    tree.remove(std::array{by});
    EXPECT_EQ(tree.allocated(0), 0);
    EXPECT_EQ(tree.allocated(by), megabyte) << "what is gone keeps its size for the report";
}

TEST(FileTree, WhatIsRestoredIsAsItWasBefore) {
    TreeBuilder builder;
    const auto b = builder.folder(0, "b");
    const auto a = builder.folder(0, "a");
    builder.hardLink(b, "y", megabyte, 77);
    const auto ax = builder.hardLink(a, "x", megabyte, 77);
    builder.file(a, "film", 500);
    const FileTree before = builder.build();

    FileTree tree = before;
    tree.remove(std::array{ax});
    tree.remove(std::array{a});
    tree.restore(std::array{a});
    EXPECT_EQ(tree.allocated(a), 500) << "what was removed on its own stays away";
    EXPECT_FALSE(tree.isAttached(ax));
    tree.restore(std::array<NodeIndex, 3>{ax, b, 999});
    EXPECT_TRUE(std::ranges::equal(tree.allocatedBytes, before.allocatedBytes));
    EXPECT_TRUE(std::ranges::equal(tree.childList, before.childList));
    EXPECT_TRUE(std::ranges::equal(tree.nodeFlags, before.nodeFlags));
    EXPECT_TRUE(std::ranges::equal(tree.descendantCounts, before.descendantCounts));
}

TEST(FileTree, CountsWhatCouldNotBeReadAtEveryFolderThatHoldsIt) {
    TreeBuilder builder;
    const auto a = builder.folder(0, "a");
    const auto closed = builder.folder(a, "closed", NodeFlags::unreadable);
    const auto listable = builder.folder(a, "listable");
    const auto b = builder.folder(0, "b");
    builder.tree.unlistedEntries = {{listable, 2}};
    builder.tree.unreadableCount = 3;
    FileTree tree = builder.build();
    const auto counts = [&] {
        std::vector<std::uint64_t> all;
        for (const NodeIndex node : {NodeIndex{0}, a, closed, listable, b})
            all.push_back(tree.unreadableIn(node));
        return all;
    };
    using Counts = std::vector<std::uint64_t>;
    EXPECT_EQ(counts(), (Counts{3, 3, 1, 2, 0}));
    tree.remove(std::array{a});
    EXPECT_EQ(counts(), (Counts{0, 3, 1, 2, 0}));
    tree.restore(std::array{a});
    EXPECT_EQ(counts(), (Counts{3, 3, 1, 2, 0}));

    TreeBuilder again("/root/b");
    again.tree.unlistedEntries = {{0, 1}};
    again.tree.unreadableCount = 1;
    tree = tree.spliced(b, again.build());
    EXPECT_EQ(tree.unreadableCount, 4);
    EXPECT_EQ(counts(), (Counts{4, 3, 1, 2, 1}));
    const auto& paths = PathCanonicalizer::shared();
    tree = tree.spliced(tree.index("/root/a", paths).value(), TreeBuilder("/root/a").build());
    EXPECT_EQ(tree.unreadableCount, 1) << "all of it can be read by now";
    EXPECT_EQ(tree.unreadableIn(0), 1);
    EXPECT_EQ(tree.unreadableIn(tree.index("/root/a", paths).value()), 0);
}

TEST(FileTree, ComparesLinkPathsByBytesAndTakesTheLargestSizeMeasured) {
    TreeBuilder builder;
    const auto upper = builder.hardLink(0, "Z", 10, 5);
    const auto lower = builder.hardLink(0, "a", 30, 5); // it grew while the walk ran
    const auto alone = builder.hardLink(0, "alone", 20, 6);
    const FileTree tree = builder.build();
    EXPECT_EQ(tree.allocated(upper), 30);
    EXPECT_EQ(tree.allocated(lower), 0);
    EXPECT_EQ(tree.allocated(alone), 20) << "its other links lie outside the tree";
}

TEST(FileTree, RemovesWholeSubtreesAndRemembersTheirPaths) {
    TreeBuilder builder;
    const auto top = builder.folder(0, "top");
    const auto a = builder.folder(top, "a");
    const auto inner = builder.file(a, "inner", 5);
    builder.file(0, "stays", 1);
    FileTree tree = builder.build();

    tree.remove(std::array<NodeIndex, 4>{a, a, 0, 999});
    EXPECT_EQ(tree.allocated(0), 1);
    EXPECT_EQ(tree.descendantCount(0), 2);
    EXPECT_EQ(childNames(tree, 0), (Names{"stays", "top"}));
    EXPECT_FALSE(tree.isAttached(inner));
    EXPECT_EQ(tree.walkedPath(inner), "/root/top/a/inner");
    EXPECT_EQ(tree.allocated(a), 5);

    const auto before = tree.childList;
    tree.childList.clear();
    tree.remove(std::array<NodeIndex, 2>{0, a});
    EXPECT_TRUE(tree.childList.empty()) << "nothing was left to remove, so nothing is computed again";
}

TEST(FileTree, FindsNodesByPath) {
    const PathCanonicalizer split("/Users\tUsers\n");
    TreeBuilder builder("/System/Volumes/Data/Users/ann");
    const auto a = builder.folder(0, "a");
    const auto odd = builder.file(a, "b\xFF\nc", 1);
    FileTree tree = builder.build();

    EXPECT_EQ(tree.index("/Users/ann", split), 0);
    EXPECT_EQ(tree.index("/Users/ann/a/", split), a);
    EXPECT_EQ(tree.index("/System/Volumes/Data/Users/ann/a/b\xFF\nc", split), odd);
    EXPECT_EQ(tree.index("/Users/anna", split), std::nullopt);
    EXPECT_EQ(tree.index("/Users/ann/a/missing", split), std::nullopt);
    EXPECT_EQ(tree.path(odd, split), "/Users/ann/a/b\xFF\nc");
    EXPECT_EQ(tree.name(odd), "b\uFFFD\nc");

    tree.remove(std::array{a});
    EXPECT_EQ(tree.index("/Users/ann/a", split), std::nullopt);

    TreeBuilder whole("/");
    const auto etc = whole.folder(0, "etc");
    EXPECT_EQ(whole.build().index("/etc", PathCanonicalizer("")), etc);
    EXPECT_EQ(whole.build().walkedPath(etc), "/etc");
}

TEST(FileTree, MatchesAStampToTheMinute) {
    TreeBuilder builder;
    const auto file = builder.file(0, "f", 100);
    const auto folder = builder.folder(0, "d");
    builder.tree.device = 9;
    for (const auto node : {file, folder}) {
        builder.tree.inodes[node] = 50;
        builder.tree.modifiedMinutes[node] = -2;
    }
    FileTree tree = builder.build();
    constexpr std::int64_t second = 1'000'000'000;
    FileStamp stamp{.identity = {.device = 9, .inode = 50},
                    .size = 100,
                    .modifiedNanos = -61 * second, // before 1970 a minute is rounded down, not toward 1970
                    .isDirectory = false};
    EXPECT_TRUE(tree.matchesScan(file, stamp));
    stamp.modifiedNanos = -119 * second;
    EXPECT_TRUE(tree.matchesScan(file, stamp));
    stamp.modifiedNanos = -59 * second;
    EXPECT_FALSE(tree.matchesScan(file, stamp));

    stamp.modifiedNanos = -61 * second;
    stamp.size = 101;
    EXPECT_FALSE(tree.matchesScan(file, stamp));
    EXPECT_TRUE(tree.matchesScan(folder, stamp)) << "a folder's own size says nothing";
    stamp.identity.device = 8;
    EXPECT_FALSE(tree.matchesScan(folder, stamp));
    tree.device = 0;
    EXPECT_TRUE(tree.matchesScan(folder, stamp));
    stamp.identity.inode = 51;
    EXPECT_FALSE(tree.matchesScan(folder, stamp));
}

TEST(FileTree, MarksWhatHoldsProtectedData) {
    TreeBuilder builder;
    const auto media = builder.folder(0, "media");
    const auto library = builder.folder(media, "Family.photoslibrary");
    const auto keys = builder.file(media, ".keychain", 1); // the suffix is the whole name
    const auto other = builder.folder(0, "other");
    builder.file(other, "keychain.txt", 1);
    const FileTree tree = builder.build();
    for (const auto node : {NodeIndex{0}, media, library, keys})
        EXPECT_TRUE(tree.containsProtectedData(node)) << node;
    EXPECT_FALSE(tree.containsProtectedData(other));
}

TEST(FileTreeDeathTest, StopsOnANodeThatIsNotThere) {
    const FileTree tree = TreeBuilder().build();
    EXPECT_DEATH(static_cast<void>(tree.allocated(1)), "a node of this tree");
}

} // namespace
} // namespace orbel
