#pragma once

#include "Platform/SystemPlaces.h"
#include "Scan/FileTree.h"
#include "Scan/ScanCancellation.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace orbel {

using platform::SystemPlace;

/// Finds what a command frees outside the home and is worth it. Not instantiable.
struct SystemPlaces {
    SystemPlaces() = delete;

    static constexpr std::uint64_t leastBytes = 100'000'000;

    using Source =
        std::function<std::vector<SystemPlace>(const std::string& home, const platform::MeasureFolder&)>;

    /// Those of `leastBytes` or more, the largest first; none when cancelled. Sizes come from the tree where
    /// they stand in it, else from walking. Blocks.
    static std::vector<SystemPlace> find(const std::string& home, const FileTree& tree,
                                         const ScanCancellation& cancellation,
                                         const Source& source = platform::systemPlaces);
};

} // namespace orbel
