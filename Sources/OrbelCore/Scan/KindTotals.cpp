#include "Scan/KindTotals.h"

namespace orbel {

std::vector<std::uint8_t> countedKinds(const FileTree& tree) {
    std::vector<std::uint8_t> kinds(tree.kinds.begin(), tree.kinds.end());
    std::vector<bool> isInPackage(kinds.size());
    // A parent comes before its children, so what holds for it is known when they are reached.
    for (std::size_t i = 1; i < kinds.size(); ++i) {
        const auto parent = tree.parentIndex[i];
        if (parent == FileTree::noParent)
            continue;
        if (isInPackage[parent] || NodeFlags{tree.nodeFlags[parent]}.contains(NodeFlags::package)) {
            isInPackage[i] = true;
            kinds[i] = kinds[parent];
        }
    }
    return kinds;
}

KindTotals kindTotals(const FileTree& tree) {
    KindTotals totals{};
    const auto kinds = countedKinds(tree);
    std::vector<bool> isAttached(kinds.size());
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const auto parent = tree.parentIndex[i];
        isAttached[i] = i == 0 || (parent != FileTree::noParent && isAttached[parent]);
        if (isAttached[i] && !NodeFlags{tree.nodeFlags[i]}.contains(NodeFlags::folder))
            totals.at(kinds[i]) += tree.allocatedBytes[i];
    }
    return totals;
}

KindTotals kindTotals(const FileTree& tree, NodeIndex folder) {
    KindTotals totals{};
    std::vector<NodeIndex> open{folder};
    while (!open.empty()) {
        const NodeIndex node = open.back();
        open.pop_back();
        const NodeFlags flags = tree.flags(node);
        if (flags.contains(NodeFlags::folder) && !flags.contains(NodeFlags::package)) {
            const auto children = tree.children(node);
            open.insert(open.end(), children.begin(), children.end());
        } else {
            totals.at(static_cast<std::size_t>(tree.kind(node))) += tree.allocated(node);
        }
    }
    return totals;
}

} // namespace orbel
