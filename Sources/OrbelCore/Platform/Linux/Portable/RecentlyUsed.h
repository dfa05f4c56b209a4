#pragma once

#include "Util/Iso8601.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace orbel::platform {

/// By absolute path, when a file was last used.
using UseDates = std::unordered_map<std::string, Date>;

/// What a list of recently used files (recently-used.xbel, as desktops write it) says: of each local file the
/// latest of the dates at which it was added, modified and visited. The text may be anything: what is not
/// well formed ends the reading, and what was read up to there stands.
UseDates recentlyUsedIn(std::string_view xbel);

} // namespace orbel::platform
