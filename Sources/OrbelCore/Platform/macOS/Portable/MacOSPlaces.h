#pragma once

#include "Platform/Places.h"

namespace orbel::platform {

Places macOSPlaces(const std::string& home);

} // namespace orbel::platform
