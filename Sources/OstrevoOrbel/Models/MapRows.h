#pragma once

#include "Scan/FileTree.h"

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace orbel {

/// How the map's list is sorted: the same at every level.
struct MapListOrder {
    enum class Column : std::uint8_t { name, size, share, items, changed };

    Column column = Column::size;
    bool isDescending = true;

    /// Whether the tree has its nodes in this order or its reverse, so that nothing has to be compared.
    bool isOfTheTree() const { return column == Column::size || column == Column::share; }
    bool operator==(const MapListOrder&) const = default;
};

/// A row of the map's list.
struct MapRow {
    NodeIndex node = 0;
    std::uint32_t level = 0; ///< 0 for what lies directly in the map's folder

    bool operator==(const MapRow&) const = default;
};

using NodeSet = std::unordered_set<NodeIndex>;

/// What lies in a folder, on this level, and below each folder of `open` what lies in that one. What is equal
/// in its column is in the order of the tree, the largest first. Takes time in proportion to the rows. Only
/// reads the tree; any thread may call it.
std::vector<MapRow> mapRows(const FileTree& tree, NodeIndex folder, std::uint32_t level, const NodeSet& open,
                            MapListOrder order);

/// A bound on how many rows that are.
std::size_t mostMapRows(const FileTree& tree, NodeIndex folder, const NodeSet& open);

/// Whether a node lies in the folder, however deep.
bool liesIn(const FileTree& tree, NodeIndex node, NodeIndex folder);

} // namespace orbel
