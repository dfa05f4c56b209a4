#include "Models/ChangeOrder.h"

#include "Models/SortedByKey.h"
#include "Util/TextMatcher.h"

#include <algorithm>

namespace orbel {

namespace {

std::int64_t netDifference(const ComparedScans& scans, const std::vector<std::uint32_t>& rows) {
    const auto& changes = scans.comparison.changes;
    std::vector<bool> shownBefore(scans.before->count());
    std::vector<bool> shownAfter(scans.after->count());
    for (const auto row : rows) {
        if (changes[row].before != FileTree::noParent)
            shownBefore[changes[row].before] = true;
        if (changes[row].after != FileTree::noParent)
            shownAfter[changes[row].after] = true;
    }
    const auto liesInShown = [&](const Change& change) {
        const auto& shown = ComparedScans::isGone(change) ? shownBefore : shownAfter;
        const auto& tree = scans.treeOf(change);
        auto above = tree.parent(ComparedScans::nodeOf(change));
        while (above && !shown[*above])
            above = tree.parent(*above);
        return above.has_value();
    };
    std::int64_t net = 0;
    for (const auto row : rows) {
        if (!liesInShown(changes[row]))
            net += static_cast<std::int64_t>(bytesAfter(changes[row], *scans.after)
                                             - bytesBefore(changes[row], *scans.before));
    }
    return net;
}

void sortRows(std::vector<std::uint32_t>& rows, const ComparedScans& scans, ChangeArrangement::Column column,
              bool isDescending) {
    using Column = ChangeArrangement::Column;
    const auto& changes = scans.comparison.changes;
    switch (column) {
    case Column::change:
        sortByKey(rows, isDescending, [&](std::uint32_t row) { return changes[row].kind; });
        break;
    case Column::name:
        sortByKey(rows, isDescending, [&](std::uint32_t row) {
            return caseFolded(scans.treeOf(changes[row]).nameBytes(ComparedScans::nodeOf(changes[row])));
        });
        break;
    case Column::before:
        sortByKey(rows, isDescending,
                  [&](std::uint32_t row) { return bytesBefore(changes[row], *scans.before); });
        break;
    case Column::after:
        sortByKey(rows, isDescending,
                  [&](std::uint32_t row) { return bytesAfter(changes[row], *scans.after); });
        break;
    case Column::difference:
        if (!isDescending)
            std::ranges::reverse(rows);
        break;
    }
}

} // namespace

ChangeOrder arranged(const ComparedScans& scans, const ChangeArrangement& arrangement,
                     const std::string& home, const std::function<bool()>& isCancelled) {
    using Items = ChangeArrangement::Items;
    const auto& changes = scans.comparison.changes;
    const TextMatcher matcher(arrangement.text);
    ChangeOrder order;
    for (std::uint32_t row = 0; row < changes.size() && !isCancelled(); ++row) {
        const auto& change = changes[row];
        if ((!arrangement.kind || *arrangement.kind == change.kind)
            && (arrangement.items == Items::all
                || (arrangement.items == Items::folders) == scans.isFolder(change))
            && (arrangement.text.empty() || matcher.isInPath(scans.pathOf(change), home)))
            order.rows.push_back(row);
    }
    sortRows(order.rows, scans, arrangement.column, arrangement.isDescending);
    order.net = netDifference(scans, order.rows);
    return order;
}

} // namespace orbel
