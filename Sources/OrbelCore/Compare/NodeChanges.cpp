#include "Compare/NodeChanges.h"

namespace orbel {

std::vector<NodeChange> nodeChanges(const ScanComparison& comparison, const FileTree& before,
                                    const FileTree& after) {
    std::vector<NodeChange> changes(after.count(), NodeChange::same);
    std::vector<bool> isInMoved(after.count(), false);
    for (const auto& change : comparison.changes) {
        if (change.kind == ChangeKind::moved) {
            isInMoved[change.after] = true;
            changes[change.after] = NodeChange::moved;
        }
    }
    for (const NodeIndex node : comparison.incomparable)
        changes[node] = NodeChange::incomparable;
    // What holds a node comes before it.
    for (NodeIndex node = 0; node < after.count(); ++node) {
        const auto parent = after.parent(node);
        if (parent && isInMoved[*parent])
            isInMoved[node] = true;
        if (changes[node] != NodeChange::same)
            continue;
        const auto counterpart = comparison.counterparts[node];
        if (counterpart == FileTree::noParent) {
            changes[node] = NodeChange::came;
            continue;
        }
        const auto was = before.allocated(counterpart);
        const auto is = after.allocated(node);
        if (is != was)
            changes[node] = is > was ? NodeChange::grew : NodeChange::shrank;
        else if (isInMoved[node])
            changes[node] = NodeChange::moved;
    }
    return changes;
}

std::array<std::uint64_t, nodeChangeCount> changeTotals(const std::vector<NodeChange>& changes,
                                                        const FileTree& after, NodeIndex node) {
    std::array<std::uint64_t, nodeChangeCount> totals{};
    std::vector<NodeIndex> left{node};
    while (!left.empty()) {
        const NodeIndex at = left.back();
        left.pop_back();
        const auto children = after.children(at);
        left.insert(left.end(), children.begin(), children.end());
        if (!after.isFolder(at))
            totals.at(static_cast<std::size_t>(changes[at])) += after.allocated(at);
    }
    return totals;
}

} // namespace orbel
