#include "Platform/SystemPlaces.h"

#include "Platform/Linux/Portable/LinuxSystemPlaces.h"
#include "Platform/Linux/ProgramOutput.h"
#include "Platform/MountTable.h"

#include <span>

namespace orbel::platform {

std::vector<SystemPlace> systemPlaces(const std::string& home, const MeasureFolder& measure) {
    return linuxSystemPlaces(
        {.root = {},
         .home = home,
         .resolver = PathResolver(mountPointsOutOfReach(*sharedMountTable(), std::span(&home, 1))),
         .run = programOutput,
         .measure = measure});
}

} // namespace orbel::platform
