#pragma once

#include "Platform/Places.h"

#include <functional>
#include <map>
#include <string>

namespace orbel::platform {

/// Variables and their values.
using Environment = std::map<std::string, std::string, std::less<>>;

/// The places for a home folder and for what `$XDG_CONFIG_HOME`, `$XDG_DATA_HOME`, `$XDG_STATE_HOME` and
/// `$XDG_CACHE_HOME` say; values that are not absolute are ignored. Reads the two user-dirs.dirs files that
/// may name the picture folder.
Places linuxPlaces(const std::string& home, const Environment& environment);

} // namespace orbel::platform
