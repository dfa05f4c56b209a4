#include "Platform/Conventions.h"

#include "Platform/macOS/Portable/MacOSConventions.h"
#include "Platform/Threads.h"

namespace orbel::platform {

const Conventions& conventions() {
    static const Conventions instance = macOSConventions(activeProcessorCount());
    return instance;
}

} // namespace orbel::platform
