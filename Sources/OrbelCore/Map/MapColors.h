#pragma once

#include "Scan/ContentKind.h"

#include <array>
#include <cstddef>

namespace orbel {

/// The colours that the map is drawn with.
struct MapColors {
    bool isDark;               ///< which colours of a kind belong to these
    std::array<Rgb, 3> frames; ///< ground and strip of folders at depth 0, at 1, and deeper
    Rgb ground;                ///< between the tiles
    Rgb edge;                  ///< right and bottom of folders at depth 0
    Rgb line;                  ///< of deeper ones
    Rgb hatch;                 ///< lines of what was not measured
    Rgb hatchGround;           ///< below them, and ground of what was merged
    Rgb ink;
    Rgb secondInk;
    Rgb surface;  ///< around a tick, whose box has the colour of ink
    Rgb tickMark; ///< in it

    const ContentRow::Paint& of(ContentKind kind) const {
        return isDark ? rowOf(kind).dark : rowOf(kind).light;
    }
    Rgb frame(int depth) const { return frames[static_cast<std::size_t>(depth < 2 ? depth : 2)]; }

    static const MapColors& light();
    static const MapColors& dark();
    /// With high contrast, lines and all words are black or white.
    static const MapColors& of(bool isDark, bool isContrastHigh);
};

} // namespace orbel
