#pragma once

#include "Platform/InstalledApp.h"

#include <string>

namespace orbel {

using platform::InstalledApp;

/// What the user can do about an application that is not removable here: the command, else the words why;
/// empty for one that is.
inline const std::string& adviceFor(const InstalledApp& app) {
    return app.command.empty() ? app.reason : app.command;
}

} // namespace orbel
