#include "Map/KindTotals.h"

#include "Map/TreemapModel.h"

#include <vector>

namespace orbel {

KindTotals kindTotals(const FileTree& tree, NodeIndex focus) {
    KindTotals totals{};
    std::vector<NodeIndex> open{focus};
    while (!open.empty()) {
        const NodeIndex node = open.back();
        open.pop_back();
        if (TreemapModel::isPlainFolder(tree, node)) {
            const auto children = tree.children(node);
            open.insert(open.end(), children.begin(), children.end());
        } else {
            totals[static_cast<std::size_t>(tree.kind(node))] += tree.allocated(node);
        }
    }
    return totals;
}

} // namespace orbel
