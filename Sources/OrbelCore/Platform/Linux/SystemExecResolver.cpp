#include "Platform/Linux/SystemExecResolver.h"

#include "Platform/Linux/EnvironmentText.h"
#include "Platform/MountTable.h"

#include <array>
#include <span>

namespace orbel::platform {

ExecResolver systemExecResolver(const std::string& home) {
    const std::array flatpakVariables{environmentText("FLATPAK_USER_DIR"),
                                      environmentText("FLATPAK_SYSTEM_DIR")};
    auto resolver =
        execResolver(home, environmentText("PATH"), environmentText("XDG_DATA_HOME"), flatpakVariables);
    resolver.outOfReach = mountPointsOutOfReach(mountTable(), std::span(&home, 1));
    return resolver;
}

} // namespace orbel::platform
