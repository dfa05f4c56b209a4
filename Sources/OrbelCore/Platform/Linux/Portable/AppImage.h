#pragma once

#include <string>

namespace orbel::platform {

/// Whether the file is an AppImage: a regular ELF file, no link, that says so in its header. Never blocks.
bool isAppImage(const std::string& path);

} // namespace orbel::platform
