#include "Platform/Conventions.h"

#include "Platform/Linux/Portable/LinuxConventions.h"
#include "Platform/Threads.h"

namespace orbel::platform {

const Conventions& conventions() {
    static const Conventions instance = linuxConventions(activeProcessorCount());
    return instance;
}

} // namespace orbel::platform
