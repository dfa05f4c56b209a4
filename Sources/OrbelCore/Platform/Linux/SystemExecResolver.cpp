#include "Platform/Linux/SystemExecResolver.h"

#include "Platform/Linux/EnvironmentText.h"
#include "Platform/MountTable.h"

#include <span>

namespace orbel::platform {

ExecResolver systemExecResolver(const std::string& home) {
    auto resolver = execResolver(home, environmentText("PATH"), environmentText("XDG_DATA_HOME"));
    resolver.outOfReach = mountPointsOutOfReach(mountTable(), std::span(&home, 1));
    return resolver;
}

} // namespace orbel::platform
