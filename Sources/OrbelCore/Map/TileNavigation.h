#pragma once

#include "Map/TreemapTile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace orbel {

/// Moving from tile to tile with the keys of a keyboard. Not instantiable.
struct TileNavigation {
    TileNavigation() = delete;

    enum class Direction : std::uint8_t { left, right, up, down };

    /// The part of a tile that its children do not cover: the strip at the top of a folder that shows them,
    /// else all of it.
    static TreemapRect face(const TreemapTile& tile);

    /// The index of the tile that a person would call the next one in that direction: near, and at about the
    /// same height or column. Going up from a folder's topmost child leads to its strip. Absent at the edge.
    static std::optional<std::size_t> neighbour(std::span<const TreemapTile> tiles, std::size_t from,
                                                Direction direction);
};

} // namespace orbel
