#include "Models/MapRows.h"

#include "Models/SortedByKey.h"
#include "Util/TextMatcher.h"

#include <algorithm>

namespace orbel {

namespace {

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
        sortByKey(nodes, order.isDescending,
                  [&](NodeIndex node) { return caseFolded(tree.nameBytes(node)); });
        break;
    case MapListOrder::Column::items:
        sortByKey(nodes, order.isDescending, [&](NodeIndex node) { return tree.descendantCount(node); });
        break;
    case MapListOrder::Column::changed:
        sortByKey(nodes, order.isDescending, [&](NodeIndex node) { return tree.modified(node); });
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
