#pragma once

#include "Platform/Places.h"

#include <string>
#include <vector>

namespace orbel::platform {

/// Where the tools of developers keep what they fetch, under the same names in every home folder.
std::vector<RebuildablePlace> toolCaches(const std::string& home);

} // namespace orbel::platform
