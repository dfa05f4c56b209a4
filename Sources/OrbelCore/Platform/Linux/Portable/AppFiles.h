#pragma once

#include "Platform/Linux/Portable/LauncherFiles.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orbel::platform {

/// The files of `user` in the home that serve nothing but the application at `path`: its launcher, then the
/// commands that are links into it, then its icons. Icons only when `hasOwnIcon`: no other launcher shows the
/// same one. `paths` knows which places must not be asked about.
std::vector<std::string> appFiles(const std::string& path, const LauncherFile& launcher, bool hasOwnIcon,
                                  const std::string& home, std::uint32_t user, PathResolver paths);

} // namespace orbel::platform
