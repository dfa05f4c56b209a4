#include "Growth/Growth.h"
#include "Growth/SummaryJson.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <map>

namespace orbel {
namespace {

using test::TreeBuilder;

constexpr std::uint64_t MB = 1'000'000;
constexpr Date longAgo{std::chrono::sys_days(std::chrono::year(2025) / 11 / 14)};

/// A tree with a file of so many megabytes in each of these folders.
FileTree treeOf(const std::map<std::string, std::uint64_t>& megabytes) {
    TreeBuilder builder("/data");
    std::map<std::string, NodeIndex> folders{{"", 0}};
    for (const auto& [path, size] : megabytes) {
        NodeIndex node = 0;
        for (std::size_t end = 0; end < path.size() + 1 && !path.empty(); ++end) {
            if (end != path.size() && path[end] != '/')
                continue;
            const auto part = path.substr(0, end);
            if (!folders.contains(part)) {
                const auto slash = part.rfind('/');
                folders[part] =
                    builder.folder(node, slash == std::string::npos ? part : part.substr(slash + 1));
            }
            node = folders[part];
        }
        builder.file(node, "file", size * MB);
    }
    return builder.build();
}

ScanSummary summaryOf(const std::map<std::string, std::uint64_t>& megabytes) {
    return ScanSummary::of(treeOf(megabytes), longAgo).value();
}

using Rows = std::vector<std::string>;

/// "path +megabytes" of all that grew.
std::vector<std::string> grown(const ScanSummary& before, const ScanSummary& after) {
    std::vector<std::string> rows;
    for (const auto& folder : Growth::between(before, after).folders)
        rows.push_back(folder.path + " +" + std::to_string(folder.grownBytes / MB));
    return rows;
}

/// The same, of a scan that was told to leave these out, relative to the root.
ScanSummary summaryWithout(std::vector<std::string> folders,
                           const std::map<std::string, std::uint64_t>& megabytes) {
    auto tree = treeOf(megabytes);
    for (const auto& folder : folders)
        tree.exclusions.paths.push_back("/data/" + folder);
    tree.exclusions.paths.insert(tree.exclusions.paths.end(), {"/data", "/other", "/"});
    return ScanSummary::of(tree, longAgo).value();
}

TEST(Growth, ComparesNothingThatOnlyOneScanLeftOut) {
    const std::map<std::string, std::uint64_t> less{{"home/mira", 5}, {"home/films", 100}, {"var", 50}};
    auto more = less;
    more["home/archive/old"] = 400;
    more["home/films"] = 140;
    const auto before = summaryWithout({"home/archive"}, less);
    EXPECT_EQ(before.excludedFolders, Rows{"home/archive"}) << "and nothing that is not inside the root";
    EXPECT_EQ(grown(before, summaryOf(more)), (Rows{"/data/home/films +40"})) << "measured by now";
    EXPECT_EQ(grown(summaryOf(more), before), Rows()) << "left out by now";
    auto after = less;
    after["home/archive/old"] = 300;
    EXPECT_EQ(grown(summaryWithout({"home/archive/old"}, less), summaryWithout({"home/archive/old"}, after)),
              (Rows{"/data/home/archive/old +300"}))
        << "what both were told to leave out is compared as it was found";
    more["home/new"] = 30;
    EXPECT_EQ(grown(before, summaryOf(more)), (Rows{"/data/home/films +40", "/data/home/new +30"}));
}

TEST(Growth, SummariesKeepWhatWasLeftOut) {
    auto tree = treeOf({{"films", 10}});
    tree.exclusions = {.paths = {"/data/b", "/data/a/\xFF", "/data/b"}, .patterns = {"*.o", "build/"}};
    const auto summary = ScanSummary::of(tree, longAgo).value();
    EXPECT_EQ(summary.excludedFolders, (Rows{"a/\uFFFD", "b"}));
    EXPECT_EQ(summaryIn(summaryText(summary)), summary);
    EXPECT_FALSE(summaryText(summaryOf({{"films", 10}})).contains("excluded"))
        << "read by what was there before";
    for (const auto* wrong : {"1", "[1]", "[\"b\",\"a\"]", "{}"}) {
        auto text = summaryText(summary);
        const std::string list = R"("excludedPatterns":["*.o","build/"])";
        text.replace(text.find(list), list.size(), std::string(R"("excludedPatterns":)") + wrong);
        EXPECT_FALSE(summaryIn(text)) << wrong;
    }
}

TEST(Growth, NamesTheFolderThatGrewAndNotThoseAboveIt) {
    const auto before = summaryOf({{"home/mira/films", 100}, {"home/mira/notes", 5}, {"var", 50}});
    const auto after = summaryOf({{"home/mira/films", 140}, {"home/mira/notes", 6}, {"var", 50}});
    EXPECT_EQ(grown(before, after), (Rows{"/data/home/mira/films +40"}));
    EXPECT_EQ(Growth::between(before, after).since, longAgo);
    EXPECT_EQ(Growth::between(before, after).folders[0].bytes, 140 * MB);
    EXPECT_EQ(grown(after, before), Rows());
    EXPECT_EQ(grown(after, after), Rows());
}

TEST(Growth, CountsNothingTwice) {
    const auto before = summaryOf({{"a", 10}, {"a/b", 10}, {"a/c", 10}, {"a/d", 10}});
    const auto after = summaryOf({{"a", 20}, {"a/b", 30}, {"a/c", 15}, {"a/d", 11}});
    // The megabyte of "d" is less than a twentieth, so it stays with "a".
    EXPECT_EQ(grown(before, after), (Rows{"/data/a/b +20", "/data/a +11", "/data/a/c +5"}));

    std::map<std::string, std::uint64_t> many{{"cache", 1}};
    const auto empty = summaryOf(many);
    for (int i = 0; i < 40; ++i)
        many["cache/" + std::to_string(i) + "/deep"] = 2;
    EXPECT_EQ(grown(empty, summaryOf(many)), (Rows{"/data/cache +80"}))
        << "many alike are told by the folder that holds them";
}

TEST(Growth, SeesWhatGrewBesideWhatShrank) {
    const auto before = summaryOf({{"home/films", 10}, {"home/old", 100}});
    EXPECT_EQ(grown(before, summaryOf({{"home/films", 40}, {"home/old", 1}})),
              (Rows{"/data/home/films +30"}));
    EXPECT_EQ(grown(before, summaryOf({{"", 7}, {"home/films", 10}, {"home/old", 100}})), (Rows{"/data +7"}));
}

TEST(Growth, ListsTheTenThatGrewMost) {
    std::map<std::string, std::uint64_t> before;
    std::map<std::string, std::uint64_t> after;
    Rows expected;
    for (std::uint64_t i = 0; i < 16; ++i) {
        const auto path = "group" + std::to_string(i % 4) + "/folder" + std::to_string(i);
        before[path] = 1;
        after[path] = 31 - i;
        if (i < 10)
            expected.push_back("/data/" + path + " +" + std::to_string(30 - i));
    }
    EXPECT_EQ(grown(summaryOf(before), summaryOf(after)), expected);
}

TEST(Growth, NeverSaysMoreThanItCanKnow) {
    auto before = summaryOf({{"", 20}, {"a", 50}});
    before.completeFrom = 10 * MB; // a longer list had no room for lighter folders
    const auto after = summaryOf({{"", 20}, {"a", 50}, {"new", 30}});
    EXPECT_EQ(grown(before, after), (Rows{"/data/new +20"})) << "it may have had 10 MB and not been named";
    before.completeFrom = 0;
    EXPECT_EQ(grown(before, after), (Rows{"/data/new +30"}));
}

TEST(ScanSummary, HoldsTheHeaviestFolders) {
    TreeBuilder builder("/data");
    NodeIndex node = 0;
    for (int level = 1; level <= 10; ++level)
        node = builder.folder(node, "l");
    builder.file(node, "deep", 5 * MB);
    builder.file(builder.folder(builder.folder(0, "A.app", NodeFlags::package), "inside"), "file", 4 * MB);
    builder.file(builder.folder(0, "bad\xFFname"), "file", 3 * MB);
    builder.file(builder.folder(0, "light"), "file", ScanSummary::smallestBytes - 1);
    const auto summary = ScanSummary::of(builder.build(), longAgo).value();
    ASSERT_EQ(summary.folders.size(), 10);
    EXPECT_EQ(summary.folders[0].bytes, 12 * MB + ScanSummary::smallestBytes - 1);
    EXPECT_EQ(summary.folders[8].path, "l/l/l/l/l/l/l/l");
    EXPECT_EQ(summary.folders[9].path, "A.app");
    EXPECT_EQ(summaryIn(summaryText(summary)), summary);

    TreeBuilder wide("/data");
    for (std::size_t i = 0; i < ScanSummary::mostFolders + 10; ++i)
        wide.file(wide.folder(0, std::to_string(i)), "file", MB + i);
    const auto bounded = ScanSummary::of(wide.build(), longAgo).value();
    EXPECT_EQ(bounded.folders.size(), ScanSummary::mostFolders);
    EXPECT_EQ(bounded.completeFrom, bounded.folders.back().bytes);
    EXPECT_EQ(summaryIn(summaryText(bounded)), bounded);
}

TEST(ScanSummary, IsNotMadeOfWhatCannotBeCompared) {
    EXPECT_FALSE(ScanSummary::of(FileTree("/missing"), longAgo));
    EXPECT_FALSE(ScanSummary::of(TreeBuilder("/bad\xFFname").build(), longAgo));
    TreeBuilder closed;
    closed.tree.nodeFlags[0] |= NodeFlags{NodeFlags::unreadable}.rawValue;
    EXPECT_FALSE(ScanSummary::of(closed.build(), longAgo));
}

TEST(SummaryText, IsReadOnlyWhenItIsWhole) {
    const auto with = [](const std::string& folders, const std::string& more = R"("version":1,"root":"/r")") {
        return "{" + more + R"(,"measuredAt":"2025-11-14T00:00:00Z","completeFrom":1,"folders":)" + folders
               + "}";
    };
    ASSERT_TRUE(summaryIn(with(R"([["",9],["a",5],["a/b",5],["c",4]])")));
    for (const auto* folders :
         {"[]", "{}", "[1]", R"([["a",5]])", R"([["",9,1]])", R"([["",-1]])", R"([["",1.5]])", R"([[1,1]])",
          R"([["",9],["a",10]])", R"([["",9],["a",5],["c",5]])", R"([["",9],["a",5],["a",1]])",
          R"([["",9],["",1]])", R"([["",9],["/a",1]])", R"([["",9],["a/",1]])", R"([["",9],["..",1]])",
          R"([["",9],["a/b",1],["a",2]])", R"([["",9],["a//b",1]])", R"([["",9],["a\u0000",1]])"})
        EXPECT_FALSE(summaryIn(with(folders))) << folders;
    EXPECT_FALSE(summaryIn(with(R"([["",9]])", R"("version":2,"root":"/r")")));
    EXPECT_FALSE(summaryIn(with(R"([["",9]])", R"("version":1,"root":"r")")));
    EXPECT_FALSE(summaryIn(with(R"([["",9]])", R"("version":1)")));
    const auto text = with(R"([["",9],["a",5]])");
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_FALSE(summaryIn(text.substr(0, length)));
    EXPECT_FALSE(summaryIn(std::string(100'000, '[')));
}

} // namespace
} // namespace orbel
