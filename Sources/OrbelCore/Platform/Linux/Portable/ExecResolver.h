#pragma once

#include "Platform/Launchers.h"
#include "Platform/Linux/Portable/DesktopEntry.h"
#include "Platform/Linux/Portable/ExecLine.h"
#include "Util/PathResolver.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// Finds what an Exec value starts. A plain value that may be used by any thread.
struct ExecResolver {
    std::vector<std::string> searchPath;           ///< where a program without a slash is looked for
    std::vector<std::string> flatpakInstallations; ///< each has what is installed in app/ID
    std::vector<std::string> snapFolders;          ///< each has what is installed in NAME
    std::vector<std::string> outOfReach;           ///< real paths; what lies in these is not asked for
    /// Those of flatpak that were set up by name: a missing one may be on a disk that is not there.
    std::vector<std::string> namedInstallations{};
    bool knowsAllInstallations = true; ///< false when the list of flatpak's installations could not be read

    /// In doubt, `unknown`: what may not be looked at, what is not executable, relative paths, and what lies,
    /// also through links, where volumes come and go.
    LauncherTarget resolve(std::string_view exec) const;
    LauncherTarget resolve(const ExecCommand& command) const;

    /// What an entry of a program starts; absent for entries of another type, without an Exec value, or that
    /// only hide another one. A program of an entry that hides itself without it is never `missing`.
    std::optional<LauncherTarget> resolve(const DesktopEntry& entry) const;

    /// Resolves paths without asking about what is out of reach.
    PathResolver paths() const { return PathResolver(outOfReach); }

private:
    LauncherTarget inSearchPath(const std::string& name) const;
};

/// For this home and these values of $PATH and $XDG_DATA_HOME, which may be empty, and the installations that
/// flatpak's own variables name. Usual folders count although $PATH leaves them out: a session of the desktop
/// has another one than a script. Reads the list of flatpak's further installations.
ExecResolver execResolver(const std::string& home, std::string_view path, std::string_view dataHome,
                          std::span<const std::string> flatpakVariables = {});

/// The absolute folders in a list that colons separate, such as $PATH.
std::vector<std::string> foldersIn(std::string_view list);

} // namespace orbel::platform
