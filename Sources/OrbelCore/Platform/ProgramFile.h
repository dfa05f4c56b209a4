#pragma once

#include <string>

namespace orbel::platform {

/// Whether the file is a whole application in one file, as an AppImage is. A link is none. Never blocks.
bool isSelfContainedProgram(const std::string& path);

} // namespace orbel::platform
