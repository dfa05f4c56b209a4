#pragma once

#include "Saved/Compression.h"
#include "Scan/FileTree.h"

#include <cstddef>
#include <span>
#include <vector>

namespace orbel {

/// The order in which a tree's attached nodes are kept: the root, then folder after folder, depth first, each
/// one's children together and in the order of its child list.
struct KeptOrder {
    std::vector<NodeIndex> nodes; ///< by place, the node of the tree
    /// By node of the tree, its place; FileTree::noParent for a detached one.
    std::vector<NodeIndex> places;

    explicit KeptOrder(const FileTree& tree);
};

/// The nodes of a tree as blocks of bytes, which are made and read independent of one another. What follows
/// from something else is not in them: parents, folders' bytes, descendant counts, protected data.
struct TreeBlocks {
    static constexpr std::size_t nodesPerBlock = 128 * 1024;

    static constexpr std::size_t columnsPerBlock = 10;

    static std::size_t count(std::size_t nodes) { return (nodes + nodesPerBlock - 1) / nodesPerBlock; }

    /// Block after block, the columns of each.
    static std::vector<Packed> of(const FileTree& tree, const KeptOrder& order);

    /// Fills `tree`, which has its paths and its lists and no nodes, with `nodes` nodes from the columns of
    /// `count(nodes)` blocks. False when what they hold is no tree; it is then of no use. Every name, number
    /// and relation is checked, and the totals are summed up anew.
    static bool read(std::span<const Frame> frames, std::size_t nodes, FileTree& tree);
};

} // namespace orbel
