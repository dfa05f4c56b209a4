#include "Map/TileFace.h"

#include <algorithm>
#include <cmath>

namespace orbel {

TileBox snapped(const TreemapRect& rect, double scale) {
    const auto edge = [scale](double points) { return static_cast<int>(std::lround(points * scale)); };
    const int gap = std::max(1, edge(1));
    const int x = edge(rect.x);
    const int y = edge(rect.y);
    return {.x = x,
            .y = y,
            .width = std::max(edge(rect.right()) - x - gap, 0),
            .height = std::max(edge(rect.bottom()) - y - gap, 0)};
}

TileFace TileFace::of(const TreemapTile& tile, double width, double height) {
    TileFace face;
    if (tile.showsChildren) {
        face.style = Style::strip;
        face.isBold = tile.depth < 2;
        face.nameInset = 4;
        face.topInset = 1;
        face.showsName = width >= 30;
        face.showsSize = width >= 130;
        return face;
    }
    face.showsName = width >= 38 && height >= 15;
    face.showsSize = width >= 50 && height >= 34;
    if (width < 110 || height < 60)
        return face;
    face.style = Style::large;
    face.isBold = true;
    face.nameInset = 8;
    face.topInset = 6;
    face.nameSize = 12;
    face.lineHeight = 16;
    if (std::holds_alternative<TreemapTile::Node>(tile.content))
        face.glyphSize = 14;
    return face;
}

} // namespace orbel
