#pragma once

#include "Platform/Linux/Portable/LinuxPlaces.h"
#include "Safety/SafetyPolicy.h"

#include <string>

namespace orbel::test {

// The options under which a policy decides as on the named system, whatever system the tests run on and
// whatever the environment of this process says.

SafetyPolicy::Options macOSOptions();
SafetyPolicy::Options linuxOptions(platform::Environment environment = {});

} // namespace orbel::test
