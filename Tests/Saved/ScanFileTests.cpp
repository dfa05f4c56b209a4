#include "Saved/ScanFile.h"
#include "Support/ChildProcess.h"
#include "Support/MadeUpTree.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace orbel {
namespace {

using test::described;
using test::MadeUpTree;
using test::TreeBuilder;

const ScanOrigin fromElsewhere{
    .measuredAt = Date(Date::duration(-5)),
    .duration = 0.25,
    .machine = "server",
    .user = "ann\xFF",
    .program = "1.2.3",
    .volume = VolumeInfo{.total = 1ULL << 62U, .free = 3, .used = 4, .availableForImportantUsage = 5},
    .usedSpace = 0};

TEST(ScanFile, GivesBackTheTreeThatWasKept) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        auto tree = MadeUpTree(seed).tree();
        const auto bytes = scanFileBytes(tree, fromElsewhere);
        auto kept = scanFromFile(bytes);
        ASSERT_TRUE(kept) << kept.error();
        EXPECT_TRUE(described(kept->tree) == described(tree));
        EXPECT_EQ(kept->origin, fromElsewhere);
        EXPECT_EQ(scanFileBytes(kept->tree, fromElsewhere), bytes) << "kept again";

        // It can be edited like the one that was scanned, and what is detached is not kept.
        const auto gone = [&](const FileTree& from) {
            std::vector<NodeIndex> nodes(from.children(0).begin(), from.children(0).begin() + 3);
            for (const auto& [file, members] : from.hardLinkMembers)
                nodes.push_back(*std::ranges::min_element(
                    members, {}, [&](NodeIndex node) { return from.walkedPath(node); }));
            return nodes;
        };
        tree.remove(gone(tree));
        kept->tree.remove(gone(kept->tree));
        const auto sorted = [](auto lines) {
            std::ranges::sort(lines);
            return lines;
        };
        // Of children that have become equally large, the order was never more than that of their indices.
        EXPECT_TRUE(sorted(described(kept->tree)) == sorted(described(tree)));
        const auto again = scanFromFile(scanFileBytes(tree, {}));
        ASSERT_TRUE(again) << again.error();
        EXPECT_TRUE(described(again->tree) == described(tree));
        EXPECT_LT(again->tree.count(), tree.count());
    }
}

TEST(ScanFile, KeepsATreeOfSeveralBlocksAndOneOfNothing) {
    TreeBuilder large;
    for (int i = 0; i < 400; ++i) {
        const auto folder = large.folder(0, "folder " + std::to_string(i));
        for (int k = 0; k < 700; ++k)
            large.file(folder, std::to_string(k),
                       static_cast<std::uint64_t>(4096) * static_cast<unsigned>(k % 7));
    }
    const auto tree = large.build();
    const auto kept = scanFromFile(scanFileBytes(tree, {}));
    ASSERT_TRUE(kept) << kept.error();
    EXPECT_TRUE(described(kept->tree) == described(tree));

    const auto alone = TreeBuilder().build();
    const auto keptAlone = scanFromFile(scanFileBytes(alone, {}));
    ASSERT_TRUE(keptAlone) << keptAlone.error();
    EXPECT_TRUE(described(keptAlone->tree) == described(alone));
}

TEST(ScanFile, BelievesNothingThatIsDamaged) {
    const auto tree = MadeUpTree(3).tree();
    const auto whole = described(tree);
    const auto bytes = scanFileBytes(tree, fromElsewhere);
    int undetected = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (const int change : {0xFF, 0x01}) {
            auto damaged = bytes;
            damaged[i] = static_cast<char>(damaged[i] ^ change);
            // A few bits of a compressed frame say nothing about what is in it.
            if (const auto read = scanFromFile(damaged)) {
                EXPECT_TRUE(described(read->tree) == whole && read->origin == fromElsewhere) << "byte " << i;
                ++undetected;
            }
        }
        EXPECT_FALSE(scanFromFile(std::string_view(bytes).substr(0, i))) << "the first " << i;
    }
    EXPECT_LT(undetected, 50);
    EXPECT_FALSE(scanFromFile(bytes + '\0'));
    const auto errorOf = [](std::string_view text) {
        const auto kept = scanFromFile(text);
        return kept ? "none" : kept.error();
    };
    EXPECT_EQ(errorOf("{\"root\": \"/\"}"), "Not a scan file");
    EXPECT_EQ(errorOf(bytes.substr(0, bytes.size() / 2)), "The scan file is damaged");
    auto newer = bytes;
    newer[14] = 2;
    EXPECT_EQ(errorOf(newer), "The scan file was written by a newer version of this program");
    EXPECT_TRUE(looksLikeScanFile(bytes.substr(0, 20)));
    EXPECT_FALSE(looksLikeScanFile(bytes.substr(0, 10)));
}

/// What is well formed may still be no tree: each is what a writer with another idea of one would make.
TEST(ScanFile, BelievesNoTreeThatCannotBe) {
    const auto isRead = [](const FileTree& tree) {
        return scanFromFile(scanFileBytes(tree, {})).has_value();
    };
    const auto with = [](auto change) {
        TreeBuilder builder;
        const auto folder = builder.folder(0, "folder");
        builder.file(folder, "small", 4096);
        builder.file(folder, "large", 8192);
        auto tree = builder.build();
        change(tree);
        return tree;
    };
    EXPECT_TRUE(isRead(with([](FileTree&) {})));
    for (const std::string_view name : std::vector<std::string_view>{"a/b12", "..", ".", "", {"a\0b12", 5}})
        EXPECT_FALSE(isRead(with([&](FileTree& tree) {
            tree.nameLength[3] = static_cast<std::uint16_t>(name.size());
            std::ranges::copy(name, tree.names.data() + tree.nameStart[3]);
        }))) << name;
    EXPECT_FALSE(isRead(with([](FileTree& tree) { std::swap(tree.childList[1], tree.childList[2]); })))
        << "the smaller one first";
    EXPECT_FALSE(isRead(with([](FileTree& tree) { tree.allocatedBytes[0] += 1; })))
        << "a total that is not the sum";
    EXPECT_FALSE(
        isRead(with([](FileTree& tree) { tree.allocatedBytes[2] = tree.allocatedBytes[3] = 1ULL << 63U; })));
    EXPECT_FALSE(isRead(with([](FileTree& tree) { tree.kinds[2] = 200; })));
    EXPECT_FALSE(isRead(with([](FileTree& tree) { tree.excludedNodes.insert(3); }))) << "a file with bytes";
    EXPECT_FALSE(isRead(with([](FileTree& tree) { tree.rootPath = "relative"; })));
}

TEST(ScanFile, BelievesNoTimeAndNoVolumeThatCannotBe) {
    const auto tree = TreeBuilder().build();
    const auto isRead = [&](auto change) {
        auto origin = fromElsewhere;
        change(origin);
        return scanFromFile(scanFileBytes(tree, origin)).has_value();
    };
    EXPECT_TRUE(isRead([](ScanOrigin& origin) { origin.volume.reset(); }));
    for (const double duration : {-1.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_FALSE(isRead([&](ScanOrigin& origin) { origin.duration = duration; })) << duration;
    for (const Date date : {Date::min(), Date::max()})
        EXPECT_FALSE(isRead([&](ScanOrigin& origin) { origin.measuredAt = date; }));
    EXPECT_FALSE(isRead([](ScanOrigin& origin) { origin.volume->used = 1ULL << 63U; }));
}

TEST(ScanFile, LeavesOutAVolumeThatClaimsToBeEndless) {
    if (!test::isRoot())
        GTEST_SKIP() << "only root can mount such a volume";
    const test::TemporaryFolder folder;
    EXPECT_TRUE(test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(folder.path().c_str(), "6e");
        ScanResult result;
        result.tree = TreeBuilder(folder.path()).build();
        ASSERT_GT(VolumeInfo::read(folder.path())->total, mostScanBytes);
        const auto kept = scanFromFile(scanFileBytes(result.tree, ScanOrigin::ofHere(result)));
        ASSERT_TRUE(kept) << kept.error();
        EXPECT_FALSE(kept->origin.volume);
        EXPECT_FALSE(kept->origin.machine.empty());
    }));
}

} // namespace
} // namespace orbel
