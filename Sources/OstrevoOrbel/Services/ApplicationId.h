#pragma once

#include <string_view>

namespace orbel {

/// The application's name on the session bus, the object that it puts there, and its desktop file.
struct ApplicationId {
    static constexpr const char* busName = "org.ostrevo.Orbel";
    static constexpr const char* objectPath = "/org/ostrevo/Orbel";
    static constexpr std::string_view desktopId = "ostrevo-orbel";
};

} // namespace orbel
