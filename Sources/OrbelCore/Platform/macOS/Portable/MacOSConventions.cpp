#include "Platform/macOS/Portable/MacOSConventions.h"

#include <algorithm>

namespace orbel::platform {

Conventions macOSConventions(int activeProcessors) {
    // Two processors are left to the window and to what else runs.
    return {.defaultWalkerWorkers = std::max(activeProcessors - 2, 2),
            .fileManager = "Finder",
            .thisComputer = "this Mac",
            .notAnApplication = "Not a Mac app (remove it in Finder)",
            .protectedBySystem = "Protected by macOS",
            .hasFurtherRefusals = false};
}

} // namespace orbel::platform
