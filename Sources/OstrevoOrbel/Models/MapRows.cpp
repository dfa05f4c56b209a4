#include "Models/MapRows.h"

#include "Util/TextMatcher.h"

#include <algorithm>
#include <functional>

namespace orbel {

namespace {

/// Sorts by what `keyOf` gives for a node, which is asked once for each.
template <class KeyOf>
void sortNodes(std::vector<NodeIndex>& nodes, bool isDescending, KeyOf keyOf) {
    std::vector<std::pair<decltype(keyOf(NodeIndex())), NodeIndex>> keyed;
    keyed.reserve(nodes.size());
    for (const NodeIndex node : nodes)
        keyed.emplace_back(keyOf(node), node);
    const auto key = [](const auto& entry) -> const auto& {
        return entry.first;
    };
    if (isDescending)
        std::ranges::stable_sort(keyed, std::ranges::greater{}, key);
    else
        std::ranges::stable_sort(keyed, {}, key);
    std::ranges::transform(keyed, nodes.begin(), [](const auto& entry) { return entry.second; });
}

std::vector<NodeIndex> sortedChildren(const FileTree& tree, NodeIndex folder, MapListOrder order) {
    const auto children = tree.children(folder);
    std::vector<NodeIndex> nodes(children.begin(), children.end());
    switch (order.column) {
    case MapListOrder::Column::size:
    case MapListOrder::Column::share:
        if (!order.isDescending)
            std::ranges::reverse(nodes);
        break;
    case MapListOrder::Column::name:
        sortNodes(nodes, order.isDescending,
                  [&](NodeIndex node) { return caseFolded(tree.nameBytes(node)); });
        break;
    case MapListOrder::Column::items:
        sortNodes(nodes, order.isDescending, [&](NodeIndex node) { return tree.descendantCount(node); });
        break;
    case MapListOrder::Column::changed:
        sortNodes(nodes, order.isDescending, [&](NodeIndex node) { return tree.modified(node); });
        break;
    }
    return nodes;
}

} // namespace

std::vector<MapRow> mapRows(const FileTree& tree, NodeIndex folder, std::uint32_t level, const NodeSet& open,
                            MapListOrder order) {
    struct Level {
        std::vector<NodeIndex> nodes;
        std::size_t next = 0;
    };
    std::vector<MapRow> rows;
    rows.reserve(tree.children(folder).size());
    std::vector<Level> levels;
    levels.push_back({sortedChildren(tree, folder, order)});
    while (!levels.empty()) {
        auto& innermost = levels.back();
        if (innermost.next == innermost.nodes.size()) {
            levels.pop_back();
            continue;
        }
        const NodeIndex node = innermost.nodes[innermost.next++];
        rows.push_back({node, level + static_cast<std::uint32_t>(levels.size()) - 1});
        if (!open.empty() && open.contains(node))
            levels.push_back({sortedChildren(tree, node, order)});
    }
    return rows;
}

std::size_t mostMapRows(const FileTree& tree, NodeIndex folder, const NodeSet& open) {
    auto most = tree.children(folder).size();
    for (const NodeIndex opened : open) {
        if (liesIn(tree, opened, folder))
            most += tree.children(opened).size();
    }
    return most;
}

bool liesIn(const FileTree& tree, NodeIndex node, NodeIndex folder) {
    for (auto above = tree.parent(node); above; above = tree.parent(*above)) {
        if (*above == folder)
            return true;
    }
    return false;
}

} // namespace orbel
