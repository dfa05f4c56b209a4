#pragma once

#include "Platform/Linux/Portable/ExecResolver.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orbel::platform {

/// One launcher of the menu, and what it starts.
struct LauncherFile {
    std::string path;
    std::string id; ///< the desktop id, without ".desktop"
    DesktopEntry entry;
    std::optional<ExecCommand> command; ///< absent when it cannot be found out
    LauncherTarget target;
    std::string program;               ///< the real path of the program; empty when it was not found
    std::vector<std::string> shadowed; ///< launchers of the same id that this one takes the place of
};

/// The launchers in `folders` and the folders below, in that order and by name. Of one id the first counts;
/// one that says "Hidden" hides it in all. Entries of another type than a program's are left out.
std::vector<LauncherFile> launcherFiles(std::span<const std::string> folders, const ExecResolver& resolver);

} // namespace orbel::platform
