#pragma once

#include <map>
#include <set>
#include <string>

namespace orbel::platform {

/// What says that something is installed, by name and by place, as it is written there. A plain value.
struct InstalledIds {
    /// The names of all packages by what keeps them: "dpkg", "rpm", "pacman", "flatpak" (ids) and "snap". One
    /// that is not here did not answer, or not for all of its places: nothing of it may be taken for removed.
    std::map<std::string, std::set<std::string>> packages{};
    /// Every name that a program in the search path, a launcher (a hidden one too), a service, an
    /// application's description, its settings or its icon has, and every word that launchers and services
    /// are made of. File names are whole, with their endings.
    std::set<std::string> names{};
    /// False when a place of names could not be read: then more may be installed than `names` tells.
    bool isComplete = true;
    /// Where launchers, services and links in the search path lead to: absolute paths, also resolved.
    std::set<std::string> programs{};
};

/// Of this system and this process's environment. `home`: real path. Reads many small files; asks the
/// system's package manager at most once.
InstalledIds installedIds(const std::string& home);

} // namespace orbel::platform
