#pragma once

#include "Compare/NodeChanges.h"
#include "Safety/PathCanonicalizer.h"

#include <memory>
#include <string>
#include <vector>

namespace orbel {

/// Two scans of one folder, and what changed between them. Never changes, so any thread may read it; it owns
/// its trees together with others.
struct ComparedScans {
    std::shared_ptr<const FileTree> before;
    std::shared_ptr<const FileTree> after;
    ScanComparison comparison;
    std::vector<NodeChange> nodes; ///< by node of `after`

    /// Looks at every node of both: not for the main thread.
    static ComparedScans of(std::shared_ptr<const FileTree> before, std::shared_ptr<const FileTree> after) {
        auto comparison = ScanComparison::between(*before, *after);
        auto nodes = nodeChanges(comparison, *before, *after);
        return {std::move(before), std::move(after), std::move(comparison), std::move(nodes)};
    }

    // A change is told of the tree that still has its node.

    static bool isGone(const Change& change) { return change.kind == ChangeKind::went; }
    const FileTree& treeOf(const Change& change) const { return isGone(change) ? *before : *after; }
    static NodeIndex nodeOf(const Change& change) { return isGone(change) ? change.before : change.after; }
    bool isFolder(const Change& change) const { return treeOf(change).isFolder(nodeOf(change)); }
    std::string pathOf(const Change& change) const {
        return treeOf(change).path(nodeOf(change), PathCanonicalizer::shared());
    }
};

} // namespace orbel
