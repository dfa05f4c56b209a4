#pragma once

#include <string>

namespace orbel::platform {

/// Whether the file is a whole application in one file, as an AppImage is. Never true for a
/// link. Never blocks.
bool isSelfContainedProgram(const std::string& path);

} // namespace orbel::platform
