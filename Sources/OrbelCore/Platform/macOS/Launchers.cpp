#include "Platform/Launchers.h"

namespace orbel::platform {

// Programs are started by bundles there, not by files that name them.

std::vector<std::string> userLauncherFolders(const std::string& /*home*/) {
    return {};
}

std::optional<LauncherTarget> launcherTarget(const std::string& /*path*/, const std::string& /*home*/) {
    return std::nullopt;
}

} // namespace orbel::platform
