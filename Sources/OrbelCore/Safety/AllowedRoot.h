#pragma once

#include "Util/RawValue.h"

#include <array>
#include <cstdint>

namespace orbel {

/// The place where an item is expected to live, which decides where it may be moved from and put back to.
enum class AllowedRoot : std::uint8_t {
    homeItem,          ///< a file or folder inside the home folder
    applicationBundle, ///< an application bundle in an Applications folder
    leftover           ///< what an application left directly inside one of the leftover folders
};

template <>
struct RawValues<AllowedRoot> {
    static constexpr std::array<std::string_view, 3> names{"homeItem", "applicationBundle", "leftover"};
};

} // namespace orbel
