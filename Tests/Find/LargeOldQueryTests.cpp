#include "Find/LargeOldQuery.h"
#include "Find/LastUsedReader.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"
#include "Support/Policies.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

using namespace std::chrono_literals;
using test::TemporaryFolder;
using test::TreeBuilder;
using Names = std::vector<std::string>;

constexpr Date now = std::chrono::sys_days(std::chrono::year(2025) / 6 / 1);
constexpr auto year = 365 * 24h;

/// A home whose tree is put together by hand; what is added lies on the disk too, so that items can be made.
class LargeOldTest : public ::testing::Test {
protected:
    NodeIndex file(NodeIndex parent, const std::string& relative, std::uint64_t bytes, NodeFlags flags = {}) {
        home.file("home/" + relative);
        return builder.file(parent, std::filesystem::path(relative).filename().string(), bytes, flags);
    }
    NodeIndex folder(NodeIndex parent, const std::string& relative) {
        home.folder("home/" + relative);
        return builder.folder(parent, std::filesystem::path(relative).filename().string());
    }

    std::vector<LargeOldQuery::Row> rows(const LargeOldQuery& query,
                                         const LargeOldQuery::IsCancelled& isCancelled = nullptr) {
        return query.run(builder.build(), policy, now, openFiles, isCancelled, reader);
    }
    Names names(const LargeOldQuery& query) {
        Names found;
        for (const auto& row : rows(query))
            found.push_back(row.item.title);
        return found;
    }

    TemporaryFolder home;
    SafetyPolicy policy{home.folder("home"), test::linuxOptions()};
    TreeBuilder builder{home.path("home")};
    InUseChecker::OpenFiles openFiles;
    std::map<std::string, Date> used; ///< what the index knows, by name
    LastUsedReader reader{[this](const std::string& path) -> std::optional<platform::UsageRecord> {
        const auto found = used.find(std::filesystem::path(path).filename().string());
        return found == used.end() ? std::nullopt : std::optional(platform::UsageRecord{found->second});
    }};
    const LargeOldQuery anyAge{.minimumBytes = 100, .unusedFor = std::nullopt};
};

TEST_F(LargeOldTest, ListsWhatIsOneThingAndTakesSpace) {
    const auto docs = folder(0, "docs");
    file(docs, "docs/a", 200);
    file(docs, "docs/small", 99);
    file(docs, "docs/b", 200);
    file(docs, "docs/large", 300);
    file(docs, "docs/cloud", 900, NodeFlags::dataless);
    file(docs, "docs/link", 900, NodeFlags::symlink);
    const auto app = folder(docs, "docs/Tool.app");
    const auto contents = folder(app, "docs/Tool.app/Contents");
    file(contents, "docs/Tool.app/Contents/inside", 250);
    folder(docs, "docs/Tool.app/Contents/Helper.app");
    home.file("home/docs/twin1");
    home.file("home/docs/twin2");
    builder.hardLink(docs, "twin2", 400, 7);
    builder.hardLink(docs, "twin1", 400, 7);
    EXPECT_EQ(names(anyAge), (Names{"twin1", "large", "Tool.app", "a", "b"}))
        << "largest first, equal ones in the tree's order; no plain folder, nothing inside the package";

    auto query = anyAge;
    query.kinds = {FileKind::application};
    EXPECT_EQ(names(query), (Names{"Tool.app"}));
    query.kinds = {FileKind::video};
    EXPECT_EQ(names(query), Names());
    std::filesystem::remove(home.path("home/docs/large"));
    EXPECT_EQ(names(anyAge).size(), 4) << "what is gone has no row";

    TreeBuilder folders(home.path("home"));
    folders.tree.allocatedBytes[folders.folder(0, "docs")] = 1'000'000;
    EXPECT_TRUE(anyAge.run(folders.build(), policy, now, openFiles, nullptr, reader).empty());
}

TEST_F(LargeOldTest, WhatWasTakenFromTheTreeIsNotListedAgain) {
    const auto docs = folder(0, "docs");
    const auto gone = folder(docs, "docs/gone");
    file(gone, "docs/gone/file", 500);
    auto tree = builder.build();
    tree.remove(std::vector{gone});
    EXPECT_TRUE(anyAge.run(tree, policy, now, openFiles, nullptr, reader).empty());
}

TEST_F(LargeOldTest, AgesByTheLastUse) {
    const auto docs = folder(0, "docs");
    for (const auto* name : {"opened", "idle", "unknown", "future", "limit"})
        file(docs, std::string("docs/") + name, 200);
    used = {{"opened", now - 24h}, {"idle", now - 2 * year}, {"future", now + 1h}, {"limit", now - year}};
    LargeOldQuery query{.minimumBytes = 100};
    EXPECT_EQ(names(query), (Names{"idle", "unknown", "limit"}));
    query.unusedFor = std::nullopt;
    const auto all = rows(query);
    ASSERT_EQ(all.size(), 5);
    EXPECT_EQ(all[1].lastUsed.source, LastUsed::Source::lastOpened);
    EXPECT_EQ(all[1].lastUsed.date, now - 2 * year);
    EXPECT_EQ(all[2].lastUsed, (LastUsed{.date = Date()})) << "the modification time stands in";
    EXPECT_EQ(all[2].lastUsed.source, LastUsed::Source::lastModified);
}

TEST_F(LargeOldTest, RefusedOnesAreListedAndCancellingKeepsWhatThereIs) {
    const auto pictures = folder(0, "Pictures");
    for (const auto* name : {"small", "large", "late"})
        file(pictures, std::string("Pictures/") + name, name == std::string("small") ? 200 : 300);
    int asked = 0;
    const auto some = rows(anyAge, [&] { return ++asked > 2; });
    ASSERT_EQ(some.size(), 2);
    EXPECT_EQ(some[0].item.title, "large");
    EXPECT_EQ(some[0].id(), "largeOld:" + home.path("home/Pictures/large"));
    EXPECT_FALSE(some[0].item.isSelectable());
}

TEST_F(LargeOldTest, OfATreeAloneAsksTheDiskNothingAndLetsNothingMove) {
    const auto docs = builder.folder(0, "docs");
    builder.tree.modifiedMinutes[builder.file(docs, "idle", 200)] = 0;
    builder.tree.modifiedMinutes[builder.hardLink(docs, "linked", 300, 7)] = 0;
    builder.tree.modifiedMinutes[builder.file(docs, "changed", 200)] =
        std::chrono::floor<std::chrono::minutes>(now - 24h).time_since_epoch().count();
    used = {{"idle", now}};
    const auto found = LargeOldQuery{.minimumBytes = 100}.shownOnly(builder.build(), now, "Far away");
    ASSERT_EQ(found.size(), 2) << "by the last change, whatever lies at these paths here";
    EXPECT_EQ(found[0].item.title, "linked");
    EXPECT_EQ(found[1].lastUsed, (LastUsed{.date = Date()}));
    EXPECT_EQ(found[1].item.blockedReason, "Far away");

    builder.tree.modifiedMinutes[builder.file(docs, "undated", 400)] = FileTree::unknownTime;
    const auto tree = builder.build();
    EXPECT_EQ((LargeOldQuery{.minimumBytes = 400}.shownOnly(tree, now).size()), 0) << "how old is not known";
    const auto undated = LargeOldQuery{.minimumBytes = 400, .unusedFor = std::nullopt}.shownOnly(tree, now);
    ASSERT_EQ(undated.size(), 1);
    EXPECT_FALSE(undated[0].lastUsed.isKnown);
}

TEST_F(LargeOldTest, TellsWhoUsesAFileOrAnythingInAPackage) {
    const auto docs = folder(0, "docs");
    const auto film = file(docs, "docs/film", 200);
    const auto app = folder(docs, "docs/Tool.app");
    file(app, "docs/Tool.app/inside", 200);
    builder.tree.device = 5;
    const auto path = [&](const std::string& name) { return home.path("home/docs/" + name); };
    const platform::UsedFile byIdentity{
        .device = 5, .inode = builder.tree.inodes[film], .path = "/elsewhere"};
    MappedFilesSnapshot snapshot;
    snapshot.processes.processes = {
        {.pid = 1, .name = "one", .files = {byIdentity, byIdentity}},
        {.pid = 2, .name = "two", .files = {{.path = path("Tool.app/x/y")}}},
        {.pid = 3, .name = "three", .files = {{.path = path("Tool.app")}}},
        {.pid = 4, .name = "four", .files = {{.path = path("Tool.app2/x")}}},
        {.pid = 5, .name = "five", .files = {{.path = path("Tool.app-x")}}},
        {.pid = 6, .name = "six", .files = {{.device = 6, .inode = byIdentity.inode}}},
        {.pid = 7, .name = "seven", .files = {{.path = path("film/x")}}},
    };
    openFiles = InUseChecker::OpenFiles(snapshot);
    const auto found = rows(anyAge);
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0].openBy, (std::vector<ProcessUse>{{1, "one"}}));
    EXPECT_EQ(found[1].openBy, (std::vector<ProcessUse>{{2, "two"}, {3, "three"}}));
}

} // namespace
} // namespace orbel
