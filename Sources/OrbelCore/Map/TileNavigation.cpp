#include "Map/TileNavigation.h"

#include "Map/TreemapModel.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orbel {

namespace {

/// A face as it is seen when looking in a direction: how far off it begins and ends, and what
/// it spans across.
struct Extent {
    double begin;
    double end;
    double low;
    double high;
};

Extent extentIn(TileNavigation::Direction direction, const TreemapRect& face) {
    switch (direction) {
    case TileNavigation::Direction::left:
        return {.begin = -face.right(), .end = -face.x, .low = face.y, .high = face.bottom()};
    case TileNavigation::Direction::right:
        return {.begin = face.x, .end = face.right(), .low = face.y, .high = face.bottom()};
    case TileNavigation::Direction::up:
        return {.begin = -face.bottom(), .end = -face.y, .low = face.x, .high = face.right()};
    case TileNavigation::Direction::down:
        break;
    }
    return {.begin = face.y, .end = face.bottom(), .low = face.x, .high = face.right()};
}

/// How much nearer a tile must be to be preferred although it lies aside, and although its middle is off.
constexpr double asideWeight = 4;
constexpr double middleWeight = 0.3;

double distance(const Extent& from, const Extent& to) {
    const double gap = to.begin - from.end;
    const double aside = std::max({to.low - from.high, from.low - to.high, 0.0});
    const double middle = std::clamp((from.low + from.high) / 2, to.low, to.high);
    return std::max(gap, 0.0) + asideWeight * aside
           + middleWeight * std::abs(middle - (from.low + from.high) / 2);
}

} // namespace

TreemapRect TileNavigation::face(const TreemapTile& tile) {
    TreemapRect face = tile.rect;
    if (tile.showsChildren)
        face.height = std::min(face.height, TreemapModel::headerHeight);
    return face;
}

std::optional<std::size_t> TileNavigation::neighbour(std::span<const TreemapTile> tiles, std::size_t from,
                                                     Direction direction) {
    // Edges that touch may differ by what rounding leaves.
    constexpr double tolerance = 0.5;
    const Extent start = extentIn(direction, face(tiles[from]));
    std::optional<std::size_t> nearest;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const Extent extent = extentIn(direction, face(tiles[i]));
        if (i == from || extent.begin < start.end - tolerance)
            continue;
        if (const double far = distance(start, extent); far < least) {
            least = far;
            nearest = i;
        }
    }
    return nearest;
}

} // namespace orbel
