#pragma once

#include "Map/TreemapTile.h"

namespace orbel {

/// Where a tile is drawn once its edges are on the grid of pixels: without the gap of one pixel to its right
/// and below. Lengths in pixels.
struct TileBox {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const TileBox&) const = default;
};

/// The box of `rect` on a grid of `scale` pixels a point. Edges that touch in points touch in pixels.
TileBox snapped(const TreemapRect& rect, double scale = 1);

/// How a tile shows what it is. Lengths in points.
struct TileFace {
    enum class Style : unsigned char {
        strip, ///< a folder with its children inside: words in the strip at its top
        plain,
        large, ///< room for a bold name and the kind's glyph
    };

    Style style = Style::plain;
    bool showsName = false;
    bool showsSize = false;
    bool isBold = false;

    double nameInset = 5;   ///< from the left edge to the words
    double topInset = 3;    ///< from the upper edge to the first line
    double nameSize = 11;   ///< height of the name's letters
    double lineHeight = 14; ///< of the name; the size follows below it, or stands at the right of a strip
    double glyphSize = 0;   ///< side of the glyph in the lower right corner; 0 when there is none
    double glyphInset = 7;  ///< from there to both edges

    /// What fits a tile that is drawn `width` by `height` points large.
    static TileFace of(const TreemapTile& tile, double width, double height);
};

} // namespace orbel
