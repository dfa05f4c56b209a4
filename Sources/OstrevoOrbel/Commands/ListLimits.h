#pragma once

#include "Commands/Command.h"
#include "Scan/FileTree.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace orbel {

struct Request;

inline constexpr CommandOption topOption{.name = "--top", .takes = "N"};
inline constexpr CommandOption depthOption{.name = "--depth", .takes = "N"};
inline constexpr CommandOption minBytesOption{.name = "--min-bytes", .takes = "N"};

/// How much of each folder a list of the largest entries shows.
struct ListLimits {
    static constexpr std::size_t defaultTop = 20;
    /// Printing a level takes some of the stack.
    static constexpr std::uint64_t deepest = 500;

    std::size_t top = defaultTop;   ///< so many entries in each folder
    std::size_t depth = 1;          ///< so many levels below the root
    std::uint64_t minimumBytes = 0; ///< nothing smaller

    /// Those that the request has with --depth and --min-bytes, of which wrong ones end the process.
    static ListLimits in(const Request& request, std::size_t top);

    /// The children of the folder that are shown, the largest first. Valid until the tree changes.
    std::span<const NodeIndex> shown(const FileTree& tree, NodeIndex folder) const;
};

} // namespace orbel
