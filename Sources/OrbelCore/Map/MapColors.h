#pragma once

#include "Scan/FileKind.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orbel {

/// A colour as 0xRRGGBB.
using Rgb = std::uint32_t;

/// The colours that the map is drawn with. Any two kinds can be told apart with the usual forms of colour
/// blindness too, and every label is legible on its fill.
struct MapColors {
    struct Kind {
        Rgb fill;
        Rgb label;
    };

    std::array<Kind, allFileKinds.size()> kinds; ///< by raw value
    std::array<Rgb, 3> frames;                   ///< ground and strip of folders at depth 0, at 1, and deeper
    Rgb ground;                                  ///< between the tiles
    Rgb edge;                                    ///< right and bottom of folders at depth 0
    Rgb line;                                    ///< of deeper ones
    Rgb hatch;                                   ///< lines of what was not measured
    Rgb hatchGround;                             ///< below them, and ground of what was merged
    Rgb ink;
    Rgb secondInk;
    Rgb surface;  ///< around a tick, whose box has the colour of ink
    Rgb tickMark; ///< in it

    const Kind& of(FileKind kind) const { return kinds[static_cast<std::size_t>(kind)]; }
    Rgb frame(int depth) const { return frames[static_cast<std::size_t>(depth < 2 ? depth : 2)]; }

    static const MapColors& light();
    static const MapColors& dark();
};

} // namespace orbel
