#include "Safety/PathCanonicalizer.h"
#include "Scan/EmptyFolderMask.h"
#include "Scan/Rescan.h"
#include "Scan/TreeScanner.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

namespace orbel {
namespace {

using Words = std::vector<std::string>;

struct ExclusionOn : testing::Test {
    void SetUp() override {
        home.file("film.iso", 70'000);
        home.file("docs/film.iso", 60'000);
        home.file("docs/letter", 5'000);
        home.file("docs/old/film.iso", 50'000);
        home.file("docs/old/deep/letter", 40'000);
        home.file("old/letter", 30'000);
        home.file("backup/a", 20'000);
        home.hardLink("docs/linked", "backup/a");
        home.hardLink("backup/b", "backup/a");
        home.folder("holder/empty");
    }
    FileTree scan(const Exclusions& exclusions, const std::string& root, int workers = 2) const {
        return TreeScanner::scan(root, workers, ScanCancellation(), nullptr, exclusions).tree;
    }
    FileTree scan(const Exclusions& exclusions) const { return scan(exclusions, home.path()); }
    static NodeIndex at(const FileTree& tree, const std::string& path) {
        return tree.index(path, PathCanonicalizer::shared()).value();
    }
    /// What is left out, relative to the home.
    std::set<std::string> leftOut(const FileTree& tree) const {
        std::set<std::string> paths;
        for (const NodeIndex node : tree.excludedNodes) {
            EXPECT_TRUE(tree.children(node).empty());
            EXPECT_EQ(tree.allocated(node), 0);
            paths.insert(tree.walkedPath(node).substr(home.path().size() + 1));
        }
        return paths;
    }
    std::set<std::string> without(Words patterns) const {
        return leftOut(scan({.paths = {}, .patterns = std::move(patterns)}));
    }
    /// The bytes of all files, as du counts them without those that it is told to leave out.
    std::uint64_t bytesOfDu(const Words& patterns) const {
        Words words{"du", "-a", "-B1", home.path()};
        for (const auto& pattern : patterns)
            words.push_back("--exclude=" + pattern);
        // Each hard link that du met first; folders' own blocks are not ours to count.
        const auto script = R"(awk -F'\t' '{ print $2 }' | while read -r path; do
            [ -d "$path" ] || stat -c '%i %b' "$path"; done | sort -u | awk '{ sum += $2 } END { print sum * 512 }')";
        std::string command;
        for (const auto& word : words)
            command += "'" + word + "' ";
        return std::stoull(test::runProgram({"sh", "-c", command + "| " + script}).output);
    }

    test::TemporaryFolder home;
};

TEST_F(ExclusionOn, MatchesNamesPathsAndPatternsBelowTheRoot) {
    using Set = std::set<std::string>;
    EXPECT_EQ(without({"old"}), (Set{"old", "docs/old"}));
    EXPECT_EQ(without({"old/"}), (Set{"old", "docs/old"}));
    EXPECT_EQ(without({"*.iso"}), (Set{"film.iso", "docs/film.iso", "docs/old/film.iso"}));
    EXPECT_EQ(without({"docs/*.iso"}), (Set{"docs/film.iso"})) << "no wildcard matches a slash";
    EXPECT_EQ(without({"./docs/old/"}), (Set{"docs/old"}));
    EXPECT_EQ(without({"*/old", "film.iso"}), (Set{"docs/old", "film.iso", "docs/film.iso"}));
    EXPECT_EQ(without({home.path("old") + "/"}), (Set{"old"}));
    EXPECT_EQ(without({home.path() + "/*/old"}), (Set{"docs/old"}));
    for (const char* const nothing : {"", "/", "ol", "old/let", "letters", "backup/../old"})
        EXPECT_EQ(without({nothing}), Set()) << nothing;

    home.link("way", home.path("docs"));
    EXPECT_EQ(without({home.path("way/old")}), (Set{"docs/old"})) << "a path leads through links";
    EXPECT_EQ(excludedPath(home.path("way/old//")), home.path("docs/old"));
    EXPECT_EQ(leftOut(scan({.paths = {excludedPath(home.path("way"))}, .patterns = {}})), (Set{"docs"}))
        << "the link itself weighs what it weighs";
    EXPECT_EQ(leftOut(scan({.paths = {home.path("docs/old")}, .patterns = {}})), (Set{"docs/old"}));
}

TEST_F(ExclusionOn, CountsWhatDuCounts) {
    for (const auto& patterns :
         std::vector<Words>{{}, {"old"}, {"*.iso"}, {"backup"}, {"a"}, {"b", "old", "film*"}}) {
        const auto tree = scan({.paths = {}, .patterns = patterns});
        EXPECT_EQ(tree.allocated(0), bytesOfDu(patterns)) << testing::PrintToString(patterns);
    }
}

TEST_F(ExclusionOn, ARootIsMeasuredAllTheSame) {
    const Exclusions exclusions{.paths = {home.path("docs"), home.path()}, .patterns = {"docs", "*"}};
    EXPECT_EQ(
        scan({.paths = {home.path("docs"), home.path()}, .patterns = {"docs"}}, home.path("docs")).count(),
        scan({}, home.path("docs")).count());
    EXPECT_EQ(scan(exclusions, home.path("docs")).excludedNodes.size(), 4) << "what is in it matches";
    EXPECT_EQ(scan(exclusions, home.path("film.iso")).allocated(0), test::blocksOf(home.path("film.iso")));
}

TEST_F(ExclusionOn, DoesNotDependOnThreadsAndTouchesNothingInside) {
    const Exclusions exclusions{.paths = {home.path("docs/old")}, .patterns = {"backup"}};
    const auto one = scan(exclusions, home.path(), 1);
    const auto many = scan(exclusions, home.path(), 8);
    EXPECT_EQ(one.excludedNodes, many.excludedNodes);
    EXPECT_EQ(one.allocated(0), many.allocated(0));
    const auto node = at(one, home.path("docs/old"));
    EXPECT_TRUE(one.isFolder(node));
    EXPECT_TRUE(one.isExcluded(node));
    EXPECT_EQ(one.otherVolumeCount, 0);
    EXPECT_EQ(one.otherVolumeInside(0), std::nullopt);
    EXPECT_EQ(one.excludedInside(at(one, home.path("docs"))), node);
    EXPECT_EQ(one.excludedInside(at(one, home.path("old"))), std::nullopt);
    // The link outside carries the bytes by itself.
    EXPECT_EQ(one.allocated(at(one, home.path("docs/linked"))), test::blocksOf(home.path("docs/linked")));
}

TEST_F(ExclusionOn, WhatHoldsItIsNotEmpty) {
    const auto isEmpty = [this](const Exclusions& exclusions) -> bool {
        const auto tree = scan(exclusions);
        return emptyFolderMask(tree)[at(tree, home.path("holder"))];
    };
    EXPECT_TRUE(isEmpty({}));
    EXPECT_FALSE(isEmpty({.paths = {home.path("holder/empty")}, .patterns = {}}));
    home.file("holder/.DS_Store");
    EXPECT_TRUE(isEmpty({}));
    EXPECT_FALSE(isEmpty({.paths = {}, .patterns = {".DS_Store"}}));
}

/// What a tree says, by path.
std::map<std::string, std::pair<std::uint64_t, std::uint8_t>> contentOf(const FileTree& tree) {
    std::map<std::string, std::pair<std::uint64_t, std::uint8_t>> content;
    for (NodeIndex node = 0; node < tree.count(); ++node) {
        if (tree.isAttached(node))
            content[tree.walkedPath(node)] = {tree.allocated(node), tree.nodeFlags[node]};
    }
    return content;
}

TEST_F(ExclusionOn, LeavingOutLaterIsTheSameAsAtOnceAndCanBeUndone) {
    const auto whole = scan({});
    for (const auto* folder : {"docs/old", "backup", "docs", "holder/empty"}) {
        const Exclusions exclusions{.paths = {home.path(folder)}, .patterns = {}};
        const auto later = whole.leavingOut(at(whole, home.path(folder)));
        EXPECT_EQ(contentOf(later), contentOf(scan(exclusions))) << folder;
        EXPECT_EQ(leftOut(later), std::set<std::string>{folder});
        EXPECT_EQ(later.otherVolumeCount, 0);

        const auto node = at(later, home.path(folder));
        EXPECT_NE(rescanTarget(later, node, exclusions), (RescanTarget{.node = node})) << folder;
        ASSERT_EQ(rescanTarget(later, node), (RescanTarget{.node = node})) << "left out no longer";
        const auto again = later.spliced(node, scan(exclusions, home.path(folder)));
        EXPECT_EQ(contentOf(again), contentOf(whole)) << folder;
        EXPECT_TRUE(again.excludedNodes.empty());
        EXPECT_EQ(again.otherVolumeCount, 0);
    }
}

TEST_F(ExclusionOn, ARescanLeavesTheSameOut) {
    const Exclusions exclusions{.paths = {home.path("docs/old"), home.path("backup")}, .patterns = {}};
    const auto tree = scan(exclusions);
    home.file("docs/new", 80'000);
    const auto docs = at(tree, home.path("docs"));
    ASSERT_EQ(rescanTarget(tree, docs, exclusions), (RescanTarget{.node = docs}));
    const auto again = tree.spliced(docs, scan(exclusions, home.path("docs")));
    EXPECT_EQ(contentOf(again), contentOf(scan(exclusions)));
    EXPECT_EQ(leftOut(again), (std::set<std::string>{"docs/old", "backup"}));
    // A root that is left out itself, or lies in what is, does not keep what is in it from being measured.
    const auto inner = scan({.paths = {home.path("docs")}, .patterns = {}}, home.path("docs"));
    const auto old = at(inner, home.path("docs/old"));
    EXPECT_EQ(rescanTarget(inner, old, {.paths = {home.path("docs")}, .patterns = {}}),
              (RescanTarget{.node = old}));
}

TEST_F(ExclusionOn, WhatWasTrashedFromItDoesNotComeBackIntoIt) {
    auto tree = scan({});
    const auto film = at(tree, home.path("docs/old/film.iso"));
    tree.remove(std::span(&film, 1));
    auto later = tree.leavingOut(at(tree, home.path("docs/old")));
    EXPECT_TRUE(later.detachedFrom.empty());
    EXPECT_EQ(contentOf(later), contentOf(scan({.paths = {home.path("docs/old")}, .patterns = {}})));
}

} // namespace
} // namespace orbel
