#include "Platform/PassingPlaces.h"

namespace orbel::platform {

PassingPlaces passingPlaces() {
    return {.volumes = {"/Volumes", "/net", "/Network"},
            .runtime = {"/tmp", "/private/tmp", "/var/run", "/private/var/run", "/dev"}};
}

} // namespace orbel::platform
