#include "Support/Policies.h"

#include "Platform/Linux/Portable/LinuxConventions.h"
#include "Platform/macOS/Portable/MacOSConventions.h"
#include "Platform/macOS/Portable/MacOSPlaces.h"

#include <utility>

namespace orbel::test {

SafetyPolicy::Options macOSOptions() {
    SafetyPolicy::Options options;
    options.conventions = platform::macOSConventions(4);
    options.places = platform::macOSPlaces;
    return options;
}

SafetyPolicy::Options linuxOptions(platform::Environment environment) {
    SafetyPolicy::Options options;
    options.conventions = platform::linuxConventions(4);
    options.places = [environment = std::move(environment)](const std::string& home) {
        return platform::linuxPlaces(home, environment);
    };
    return options;
}

} // namespace orbel::test
