#include "Compare/NodeChanges.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <numeric>

namespace orbel {
namespace {

using test::TreeBuilder;

TEST(NodeChanges, TellOfEachNodeWhatBecameOfIt) {
    // "kept" has a file of each kind; "box" moves into it with one file that grows on the way.
    TreeBuilder before;
    const auto kept = before.folder(0, "kept");
    before.file(kept, "grew", 10);
    before.file(kept, "shrank", 30);
    before.file(kept, "same", 5);
    before.file(kept, "went", 7);
    const auto box = before.folder(0, "box");
    before.tree.inodes[box] = 9;
    for (const auto* name : {"a", "b", "c"})
        before.file(box, name, 100);
    before.folder(0, "closed", NodeFlags::unreadable);

    TreeBuilder after;
    const auto keptNow = after.folder(0, "kept");
    const auto grew = after.file(keptNow, "grew", 12);
    const auto shrank = after.file(keptNow, "shrank", 8);
    const auto same = after.file(keptNow, "same", 5);
    const auto fresh = after.folder(0, "new");
    const auto came = after.file(fresh, "came", 50);
    const auto boxNow = after.folder(keptNow, "box");
    after.tree.inodes[boxNow] = 9;
    const auto a = after.file(boxNow, "a", 100);
    after.file(boxNow, "b", 100);
    const auto c = after.file(boxNow, "c", 140);
    const auto d = after.file(boxNow, "d", 1);
    const auto closed = after.folder(0, "closed");
    const auto inside = after.file(closed, "inside", 20);

    const auto old = before.build();
    const auto now = after.build();
    const auto changes = nodeChanges(ScanComparison::between(old, now), old, now);
    ASSERT_EQ(changes.size(), now.count());
    EXPECT_EQ(changes[grew], NodeChange::grew);
    EXPECT_EQ(changes[shrank], NodeChange::shrank);
    EXPECT_EQ(changes[keptNow], NodeChange::grew);
    EXPECT_EQ(changes[same], NodeChange::same);
    EXPECT_EQ(changes[fresh], NodeChange::came);
    EXPECT_EQ(changes[came], NodeChange::came);
    EXPECT_EQ(changes[boxNow], NodeChange::moved) << "although it takes more";
    EXPECT_EQ(changes[a], NodeChange::moved);
    EXPECT_EQ(changes[c], NodeChange::grew);
    EXPECT_EQ(changes[d], NodeChange::came);
    EXPECT_EQ(changes[closed], NodeChange::incomparable);
    EXPECT_EQ(changes[inside], NodeChange::incomparable);
    EXPECT_EQ(changes[0], NodeChange::incomparable) << "it holds what cannot be compared";

    const auto totals = changeTotals(changes, now, 0);
    EXPECT_EQ(totals.at(static_cast<std::size_t>(NodeChange::grew)), 152);
    EXPECT_EQ(totals.at(static_cast<std::size_t>(NodeChange::came)), 51);
    EXPECT_EQ(totals.at(static_cast<std::size_t>(NodeChange::moved)), 200);
    EXPECT_EQ(std::accumulate(totals.begin(), totals.end(), std::uint64_t{0}), now.allocated(0));
    EXPECT_EQ(changeTotals(changes, now, c).at(static_cast<std::size_t>(NodeChange::grew)), 140);
}

} // namespace
} // namespace orbel
