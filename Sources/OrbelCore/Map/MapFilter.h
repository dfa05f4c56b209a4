#pragma once

#include "Scan/ContentKind.h"

#include <string>

namespace orbel {

/// What a map is narrowed to: some kinds, or one extension. What it hides is drawn pale. A plain value.
struct MapFilter {
    unsigned kinds = 0;    ///< one bit for each ContentKind; 0: no kinds are chosen
    std::string extension; ///< in lower case; empty: none is chosen

    bool isSet() const { return kinds != 0 || !extension.empty(); }
    bool has(ContentKind kind) const { return (kinds >> static_cast<unsigned>(kind) & 1U) != 0; }
    /// Whether a node's tile is drawn in full: that of a folder by what stands for it.
    bool shows(const FileTree& tree, NodeIndex node) const;

    bool operator==(const MapFilter&) const = default;
};

} // namespace orbel
