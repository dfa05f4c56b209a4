#include "Platform/Conventions.h"

#include "Platform/Threads.h"

#include <algorithm>

namespace orbel::platform {

const Conventions& conventions() {
    // Each entry is a request of its own here, and a cold disk wants many in flight: twice as fast with 16 as
    // with 2.
    static const Conventions linux{.defaultWalkerWorkers = std::max(16, activeProcessorCount())};
    return linux;
}

} // namespace orbel::platform
