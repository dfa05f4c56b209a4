#include "Platform/Launchers.h"

#include "Platform/Linux/EnvironmentText.h"
#include "Platform/Linux/SystemExecResolver.h"
#include "Util/PathText.h"

#include <tuple>
#include <utility>

namespace orbel::platform {

std::vector<std::string> userLauncherFolders(const std::string& home) {
    std::vector<std::string> folders;
    for (const auto& [variable, usual, name] : {std::tuple{"XDG_DATA_HOME", ".local/share", "applications"},
                                                std::tuple{"XDG_CONFIG_HOME", ".config", "autostart"}}) {
        folders.push_back(joinedPath(joinedPath(home, usual), name));
        if (auto named = joinedPath(environmentText(variable), name);
            named.starts_with('/') && named != folders.back())
            folders.push_back(std::move(named));
    }
    return folders;
}

std::optional<LauncherTarget> launcherTarget(const std::string& path, const std::string& home) {
    const auto entry = DesktopEntry::read(path);
    return entry ? systemExecResolver(home).resolve(*entry) : std::nullopt;
}

} // namespace orbel::platform
