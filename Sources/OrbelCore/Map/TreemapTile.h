#pragma once

#include "Map/TreemapRect.h"
#include "Scan/FileTree.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>

namespace orbel {

/// One rectangle of the map. A plain value.
struct TreemapTile {
    /// A file, or a folder.
    struct Node {
        NodeIndex index;
        bool operator==(const Node&) const = default;
    };
    /// The children of a folder that are too small to be drawn, merged.
    struct SmallerItems {
        NodeIndex parent;
        std::size_t count;
        bool operator==(const SmallerItems&) const = default;
    };
    /// What is used on the volume and was not seen by the scan.
    struct NotMeasured {
        std::uint64_t unreadable; ///< entries that could not be read
        bool operator==(const NotMeasured&) const = default;
    };
    using Content = std::variant<Node, SmallerItems, NotMeasured>;

    int id = 0; ///< its place in the list that it is part of
    Content content;
    TreemapRect rect;
    int depth = 0; ///< 0 directly under the focus
    std::uint64_t bytes = 0;
    FileKind kind = FileKind::other; ///< what it is coloured by
    std::string label;
    bool showsChildren = false; ///< a folder with its children laid out inside

    bool operator==(const TreemapTile&) const = default;
};

} // namespace orbel
