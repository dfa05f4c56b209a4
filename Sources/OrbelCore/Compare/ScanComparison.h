#pragma once

#include "Scan/FileTree.h"
#include "Util/Column.h"

#include <cstdint>
#include <vector>

namespace orbel {

enum class ChangeKind : std::uint8_t { grew, shrank, came, went, moved };

/// What became of one file or folder between two scans. A plain value.
struct Change {
    ChangeKind kind = ChangeKind::grew;
    NodeIndex before = FileTree::noParent; ///< in the earlier tree; none for what came
    NodeIndex after = FileTree::noParent;  ///< in the later tree; none for what went

    bool operator==(const Change&) const = default;
};

/// Two scans of one folder, node by node. Names are compared byte for byte, sizes are bytes on disk. A plain
/// value; the trees are not in it and must be those that it was made of.
struct ScanComparison {
    /// The largest change first; equal ones as they lie in the trees, what holds others first.
    ///
    /// A file or folder whose bytes changed has a change of its own, a folder also when only something in it
    /// changed. What lies in something that came, went or moved has none. Moved is what has another path and
    /// is the same object: besides the inode number a file has the same size and time, a folder at least half
    /// of the entries that it had, an empty one the same time.
    std::vector<Change> changes;

    /// Per node of the later tree: the node that it was in the earlier one, under the same path or inside the
    /// same moved folder; FileTree::noParent for what is new.
    Column<NodeIndex> counterparts;

    /// Nodes of the later tree whose sizes cannot be compared, ascending: what only one of the scans could
    /// read or was told to measure, all that is in it, and what holds it. They have no change of their own.
    std::vector<NodeIndex> incomparable;

    bool isComparable(NodeIndex ofLaterTree) const;

    /// Compares the roots, which may have different paths, and all that is in them. A root that is a folder
    /// in one tree only has come and gone. Needs two trees with a root.
    static ScanComparison between(const FileTree& before, const FileTree& after);
};

/// By how many bytes what changed takes more or less than it did.
std::uint64_t bytesBefore(const Change& change, const FileTree& before);
std::uint64_t bytesAfter(const Change& change, const FileTree& after);

} // namespace orbel
