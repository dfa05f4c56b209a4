#include "Platform/Linux/Portable/LinuxConventions.h"

#include <algorithm>

namespace orbel::platform {

Conventions linuxConventions(int activeProcessors) {
    // Each entry is a request of its own here, and a cold disk wants many in flight: twice as fast with 16 as
    // with 2.
    return {.defaultWalkerWorkers = std::max(16, activeProcessors),
            .fileManager = "the file manager",
            .thisComputer = "this computer",
            .notAnApplication = "Not an application bundle",
            .protectedBySystem = "Protected by the system",
            .hasFurtherRefusals = true};
}

} // namespace orbel::platform
