#include "Map/TileFace.h"

#include <algorithm>
#include <array>
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

std::string_view glyphPath(FileKind kind) {
    static constexpr std::array<std::string_view, allFileKinds.size()> paths{
        "M2 12.5v-9h4.2L7.7 5H14v7.5z",
        "M2 4h8v8H2zM10 7.2l4-2.2v6l-4-2.2z",
        "M14 8a6 6 0 1 1-12 0a6 6 0 0 1 12 0zM9.5 8a1.5 1.5 0 1 1-3 0a1.5 1.5 0 0 1 3 0z",
        "M2.5 3h11v3h-11zM3.5 6v7.5h9V6M6.5 8.8h3",
        "M4 2h5.5L12.5 5v9H4zM9.5 2v3h3",
        "M3 3h10v10H3zM3 6.2h10",
        "M2 3h12v8H2zM5.5 14h5M8 11v3",
        "M8 3l5 5l-5 5l-5-5z",
    };
    return paths[static_cast<std::size_t>(kind)];
}

} // namespace orbel
