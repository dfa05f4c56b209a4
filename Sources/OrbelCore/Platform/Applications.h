#pragma once

#include "Platform/InstalledApp.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace orbel::platform {

/// Where applications are found, in order of precedence. `home`: its real path.
std::vector<std::string> applicationSearchFolders(const std::string& home);

/// The applications that show themselves in `folders`, in no particular order. `isWritable`: whether this
/// process may write a path. What cannot be read is left out; asks the system's package manager at most once.
std::vector<InstalledApp> installedApplications(const std::string& home, std::span<const std::string> folders,
                                                const std::function<bool(const std::string&)>& isWritable);

/// Gives the real path of the program that starts under a name without a path; empty when there is none.
using ProgramFinder = std::function<std::string(const std::string& name)>;
ProgramFinder programFinder(const std::string& home);

} // namespace orbel::platform
