#pragma once

#include "Compare/ScanComparison.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orbel {

/// A folder that takes more than it did. A plain value.
struct GrownFolder {
    NodeIndex node = 0; ///< in the later tree
    /// By how much, without what folders in it grew that are listed themselves.
    std::uint64_t grownBytes = 0;

    bool operator==(const GrownFolder&) const = default;

    static constexpr std::size_t mostFolders = 10;
    static constexpr std::uint64_t leastBytes = 1'000'000; ///< smaller growth is not listed
};

/// The folders that say in few rows what grew, the one that grew most first; equal ones by path.
///
/// Nothing counts twice. A folder is listed by itself when it makes up a twentieth or more of what grew in
/// the one that holds it; that one is left with the rest, or left out when that is less than a tenth. What is
/// new has grown from nothing, also what was elsewhere before. What cannot be compared has not grown, nor
/// what holds it; what lies beside it is listed.
std::vector<GrownFolder> grownFolders(const ScanComparison& comparison, const FileTree& before,
                                      const FileTree& after);

} // namespace orbel
