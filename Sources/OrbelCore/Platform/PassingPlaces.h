#pragma once

#include <string>
#include <vector>

namespace orbel::platform {

/// Folders in which something may be missing now and be there later without having been made anew. Absolute,
/// not resolved.
struct PassingPlaces {
    std::vector<std::string> volumes; ///< at these, or in these, volumes are mounted that may be absent
    std::vector<std::string> runtime; ///< what programs make while they run; emptied at the next start
};

/// Those of this system. Reads its table of file systems.
PassingPlaces passingPlaces();

} // namespace orbel::platform
