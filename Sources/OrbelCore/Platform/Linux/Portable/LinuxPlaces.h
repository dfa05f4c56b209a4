#pragma once

#include "Platform/Places.h"
#include "Util/PathResolver.h"

#include <functional>
#include <map>
#include <string>

namespace orbel::platform {

/// Variables and their values.
using Environment = std::map<std::string, std::string, std::less<>>;

/// The places for a home folder and for what `$XDG_CONFIG_HOME`, `$XDG_DATA_HOME`, `$XDG_STATE_HOME` and
/// `$XDG_CACHE_HOME` say; values that are not absolute are ignored. Reads the two user-dirs.dirs files that
/// may name the user's folders, as far as `resolver` may ask about them.
Places linuxPlaces(const std::string& home, const Environment& environment,
                   PathResolver resolver = PathResolver());

} // namespace orbel::platform
