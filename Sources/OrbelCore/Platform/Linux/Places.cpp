#include "Platform/Places.h"

#include "Platform/Linux/Portable/LinuxPlaces.h"
#include "Platform/Linux/Portable/MountInfo.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <span>

namespace orbel::platform {

Places places(const std::string& home) {
    Environment environment;
    for (const auto* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
        // Safe beside other threads as long as none changes the environment, and none ever does.
        if (const char* value = std::getenv(name); value != nullptr) // NOLINT(concurrency-mt-unsafe)
            environment.emplace(name, value);
    auto places = linuxPlaces(home, environment,
                              PathResolver(mountPointsOutOfReach(mountTable(), std::span(&home, 1))));
    std::ranges::move(mountPointsInFstab(readFile("/etc/fstab").value_or("")),
                      std::back_inserter(places.namedFolders));
    return places;
}

} // namespace orbel::platform
