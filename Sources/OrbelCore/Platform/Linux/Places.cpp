#include "Platform/Places.h"

#include "Platform/Linux/Portable/LinuxPlaces.h"

#include <cstdlib>

namespace orbel::platform {

Places places(const std::string& home) {
    Environment environment;
    for (const auto* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
        // Safe beside other threads as long as none changes the environment, and none ever does.
        if (const char* value = std::getenv(name); value != nullptr) // NOLINT(concurrency-mt-unsafe)
            environment.emplace(name, value);
    return linuxPlaces(home, environment);
}

} // namespace orbel::platform
