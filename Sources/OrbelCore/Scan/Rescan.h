#pragma once

#include "Scan/FileTree.h"

#include <cstdint>

namespace orbel {

/// What has to be measured to bring a folder of a scanned tree up to date with the disk.
struct RescanTarget {
    enum class Kind : std::uint8_t {
        folder,     ///< `node` is to be walked and can take its place in the tree
        wholeTree,  ///< nothing less than the root will do
        gone,       ///< `node` is not on the disk any more
        unreachable ///< whether it still exists cannot be found out
    };

    Kind kind = Kind::folder;
    NodeIndex node = 0;

    bool operator==(const RescanTarget&) const = default;
};

/// The folder to measure again when that is asked for `node`: itself, or the nearest folder above that is
/// still what the scan saw there. Only such a folder can be measured by itself and give what a whole scan
/// would give for it: what has become a file, a link or the place of another volume since, and what a whole
/// scan does not enter, is for the folder that holds it. `exclusions` are those of the scan to come: a folder
/// that was left out and is not any more can be measured by itself. Asks the disk; triggers no automount.
RescanTarget rescanTarget(const FileTree& tree, NodeIndex node, const Exclusions& exclusions = {});

} // namespace orbel
