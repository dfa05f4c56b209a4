#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orbel {

/// The place where an item is expected to live, which decides where it may be moved from and put back to.
enum class AllowedRoot : std::uint8_t {
    homeItem,          ///< a file or folder inside the home folder
    applicationBundle, ///< an application bundle in an Applications folder
    leftover           ///< what an application left directly inside one of the leftover folders
};

/// The text under which it is stored: "homeItem", "applicationBundle", "leftover".
std::string_view rawValue(AllowedRoot root);

/// The inverse; absent for any other text.
std::optional<AllowedRoot> allowedRoot(std::string_view rawValue);

} // namespace orbel
