#pragma once

#include "Map/TreemapTile.h"
#include "Scan/ContentKind.h"
#include "Scan/Coverage.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace orbel {

/// Turns the tree below a folder into the rectangles of its map, and finds the one under a point. Draws
/// nothing. Every call only reads; any thread may make it. Not instantiable.
struct TreemapModel {
    TreemapModel() = delete;

    static constexpr double minimumTileArea = 30; ///< square points; what is smaller is merged
    static constexpr double headerHeight = 16;    ///< points at the top of a folder, for its name
    static constexpr double padding = 2;          ///< points around the children of a folder

    /// The tiles of what lies in `focus`, filling `area`: parents before the tiles inside them, so that they
    /// can be drawn in this order. Folders down to `maxDepth` show their children where there is room;
    /// packages never do. With a `coverage`, the root's map also has a tile for what was not measured. Takes
    /// time in proportion to the tiles, however many children a folder has: `tree` is finished, so they are
    /// sorted and summed up.
    static std::vector<TreemapTile> tiles(const FileTree& tree, NodeIndex focus, const TreemapRect& area,
                                          int maxDepth, const std::optional<Coverage>& coverage,
                                          std::size_t tileLimit);

    /// The innermost tile that contains the point; null when none does. It lives as long as `tiles`.
    static const TreemapTile* hit(std::span<const TreemapTile> tiles, double x, double y);

    /// What stands for a node: of a folder, what is found by going from largest child to largest child.
    static NodeIndex representative(const FileTree& tree, NodeIndex node);
    /// Its kind.
    static FileKind representativeKind(const FileTree& tree, NodeIndex node);
    /// The kind whose colour a node has: that of what stands for it.
    static ContentKind contentKind(const FileTree& tree, NodeIndex node);

    /// A folder that may show its children: any but a package.
    static bool isPlainFolder(const FileTree& tree, NodeIndex node);
};

} // namespace orbel
