#pragma once

#include "Platform/Conventions.h"

#include <string>
#include <string_view>

namespace orbel {

/// The words with what the platform calls its file manager where they say "{fileManager}".
inline std::string withFileManager(std::string_view words) {
    constexpr std::string_view place = "{fileManager}";
    std::string text(words);
    if (const auto at = text.find(place); at != std::string::npos)
        text.replace(at, place.size(), platform::conventions().fileManager);
    return text;
}

} // namespace orbel
