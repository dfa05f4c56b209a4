#include "Platform/Places.h"

#include "Platform/macOS/Portable/MacOSPlaces.h"

namespace orbel::platform {

Places places(const std::string& home) {
    return macOSPlaces(home);
}

} // namespace orbel::platform
