#pragma once

#include "Platform/InstalledIds.h"
#include "Platform/Linux/Portable/ExecResolver.h"
#include "Platform/Linux/Portable/PackageOwners.h"

#include <string>
#include <vector>

namespace orbel::platform {

/// What the names of all that is installed on a Linux system are looked for with.
struct InstalledIdSearch {
    ExecResolver resolver; ///< the search path, and where flatpak and snap keep what is installed
    /// Launchers and services, which are read, also in folders below.
    std::vector<std::string> entryFolders{};
    /// What is named after applications; a component "*" stands for any one name.
    std::vector<std::string> namedFolders{};
    std::string snapFiles = "/var/lib/snapd/snaps"; ///< NAME_REVISION.snap
    PackageDatabases databases{};
    RunProgram run{};
};

/// Values of the environment's variables of these names, which may be empty.
struct BaseFolders {
    std::string dataHome{};
    std::string dataFolders{};
    std::string configHome{};
    std::string configFolders{};
};

InstalledIdSearch installedIdSearch(const std::string& home, ExecResolver resolver,
                                    const BaseFolders& folders);

/// Reads the disk; nothing in any file makes it fail.
InstalledIds linuxInstalledIds(const InstalledIdSearch& search);

} // namespace orbel::platform
