#pragma once

#include "Scan/Coverage.h"
#include "Scan/FileTree.h"

#include <optional>
#include <string>

namespace orbel {

/// The map of a tree as a picture: one SVG document that needs nothing beside it, with the tiles, their names
/// and sizes, and a legend. Every tile carries its path, size and share as a title, which viewers show on
/// hover and read aloud. Not instantiable.
struct MapSvg {
    MapSvg() = delete;

    /// In pixels.
    struct Size {
        int width = 1440;
        int height = 900;
        bool operator==(const Size&) const = default;
    };
    static constexpr Size smallest{.width = 320, .height = 240};
    static constexpr Size largest{.width = 8192, .height = 8192};

    struct Picture {
        const FileTree& tree; ///< finished, with at least a root
        std::optional<Coverage> coverage;
        std::string title;
        std::string remark; ///< below the title
        Size size;
    };

    /// Valid UTF-8 and well-formed for any names on the disk. The same picture gives the same text.
    static std::string render(const Picture& picture);
};

} // namespace orbel
