#include "Compare/GrownFolders.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <map>

namespace orbel {
namespace {

using test::TreeBuilder;

constexpr std::uint64_t MB = 1'000'000;

/// By folder, how many megabytes the file in it has.
using Megabytes = std::map<std::string, std::uint64_t>;

FileTree treeOf(const Megabytes& megabytes) {
    TreeBuilder builder("/data");
    std::map<std::string, NodeIndex> folders{{"", 0}};
    for (const auto& [path, size] : megabytes) {
        NodeIndex node = 0;
        for (std::size_t end = 0; end < path.size() + 1 && !path.empty(); ++end) {
            if (end != path.size() && path[end] != '/')
                continue;
            const auto part = path.substr(0, end);
            if (!folders.contains(part))
                folders[part] = builder.folder(node, part.substr(part.rfind('/') + 1));
            node = folders[part];
        }
        builder.file(node, "file", size * MB);
    }
    return builder.build();
}

using Rows = std::vector<std::string>;

Rows grown(const FileTree& before, const FileTree& after) {
    Rows rows;
    for (const auto& folder : grownFolders(ScanComparison::between(before, after), before, after))
        rows.push_back(after.walkedPath(folder.node) + " +" + std::to_string(folder.grownBytes / MB));
    return rows;
}

Rows grown(const Megabytes& before, const Megabytes& after) {
    return grown(treeOf(before), treeOf(after));
}

TEST(GrownFolders, NameTheFolderThatGrewAndNotThoseAboveIt) {
    const Megabytes before{{"home/mira/films", 100}, {"home/mira/notes", 5}, {"var", 50}};
    const Megabytes after{{"home/mira/films", 140}, {"home/mira/notes", 6}, {"var", 50}};
    EXPECT_EQ(grown(before, after), Rows{"/data/home/mira/films +40"});
    EXPECT_EQ(grown(after, before), Rows());
    EXPECT_EQ(grown(after, after), Rows());
}

TEST(GrownFolders, CountNothingTwice) {
    // The megabyte of "d" is less than a twentieth, so it stays with "a".
    EXPECT_EQ(grown({{"a", 10}, {"a/b", 10}, {"a/c", 10}, {"a/d", 10}},
                    {{"a", 20}, {"a/b", 30}, {"a/c", 15}, {"a/d", 11}}),
              (Rows{"/data/a/b +20", "/data/a +11", "/data/a/c +5"}));

    Megabytes many{{"cache", 1}};
    const auto empty = many;
    for (int i = 0; i < 40; ++i)
        many["cache/" + std::to_string(i) + "/deep"] = 2;
    EXPECT_EQ(grown(empty, many), Rows{"/data/cache +80"}) << "many alike are told by what holds them";
}

TEST(GrownFolders, StandBesideWhatShrank) {
    const Megabytes before{{"home/films", 10}, {"home/old", 100}};
    EXPECT_EQ(grown(before, {{"home/films", 40}, {"home/old", 1}}), Rows{"/data/home/films +30"});
    EXPECT_EQ(grown(before, {{"", 7}, {"home/films", 10}, {"home/old", 100}}), Rows{"/data +7"});
    EXPECT_EQ(grown(before, {{"home/films", 10}, {"home/old", 100}, {"new/deep", 30}}),
              Rows{"/data/new/deep +30"});
}

TEST(GrownFolders, AreTheTenThatGrewMost) {
    Megabytes before;
    Megabytes after;
    Rows expected;
    for (std::uint64_t i = 0; i < 16; ++i) {
        const auto path = "group" + std::to_string(i % 4) + "/folder" + std::to_string(i);
        before[path] = 1;
        after[path] = 31 - i;
        if (i < 10)
            expected.push_back("/data/" + path + " +" + std::to_string(30 - i));
    }
    EXPECT_EQ(grown(before, after), expected);
}

TEST(GrownFolders, AreNotWhatOnlyOneScanLeftOut) {
    const auto tree = [](bool isLeftOut, std::uint64_t films) {
        TreeBuilder builder("/data");
        const auto home = builder.folder(0, "home");
        const auto archive =
            builder.folder(home, "archive", isLeftOut ? NodeFlags::otherVolume : NodeFlags{});
        if (isLeftOut)
            builder.tree.excludedNodes.insert(archive);
        else
            builder.file(builder.folder(archive, "old"), "file", 400 * MB);
        builder.file(builder.folder(home, "films"), "film", films * MB);
        return builder.build();
    };
    EXPECT_EQ(grown(tree(true, 100), tree(false, 140)), Rows{"/data/home/films +40"}) << "measured by now";
    EXPECT_EQ(grown(tree(false, 100), tree(true, 100)), Rows()) << "left out by now";
}

TEST(GrownFolders, DoNotLieInPackages) {
    const auto tree = [](std::uint64_t size) {
        TreeBuilder builder("/data");
        builder.file(builder.folder(builder.folder(0, "A.app", NodeFlags::package), "inside"), "file",
                     size * MB);
        return builder.build();
    };
    EXPECT_EQ(grown(tree(1), tree(5)), Rows{"/data/A.app +4"});
}

} // namespace
} // namespace orbel
