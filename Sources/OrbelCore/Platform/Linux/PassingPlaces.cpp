#include "Platform/PassingPlaces.h"

#include "Platform/Linux/Portable/MountInfo.h"
#include "Util/ReadFile.h"

namespace orbel::platform {

PassingPlaces passingPlaces() {
    PassingPlaces places{.volumes = {"/media", "/mnt", "/run/media", "/net", "/misc"},
                         .runtime = {"/tmp", "/var/tmp", "/run", "/var/run", "/dev", "/proc", "/sys"}};
    for (auto& path : mountPointsInFstab(readFile("/etc/fstab").value_or("")))
        places.volumes.push_back(std::move(path));
    return places;
}

} // namespace orbel::platform
