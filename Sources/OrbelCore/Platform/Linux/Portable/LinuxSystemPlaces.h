#pragma once

#include "Platform/Linux/Portable/PackageOwners.h"
#include "Platform/SystemPlaces.h"
#include "Util/PathResolver.h"

#include <string>
#include <vector>

namespace orbel::platform {

/// What the places of a Linux system are looked for with.
struct LinuxSystemSearch {
    std::string root; ///< stands before every path that is looked at; empty for the system itself
    std::string home; ///< real path
    PathResolver resolver;
    RunProgram run;
    MeasureFolder measure;
};

/// See systemPlaces(). Nothing in any file makes it fail.
std::vector<SystemPlace> linuxSystemPlaces(LinuxSystemSearch search);

} // namespace orbel::platform
