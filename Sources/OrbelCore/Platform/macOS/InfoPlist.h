#pragma once

#include <optional>
#include <string>

namespace orbel::platform {

/// What the Info.plist of a bundle says, as UTF-8; what is missing there, or no text, is empty.
struct InfoPlist {
    std::string identifier, name, displayName, version;
};

/// Read by Core Foundation, which is opened at run time. Absent when there is no such file, or it is
/// no property list.
std::optional<InfoPlist> readInfoPlist(const std::string& path);

} // namespace orbel::platform
