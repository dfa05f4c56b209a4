#include "Platform/Linux/SystemExecResolver.h"

#include "Platform/Linux/EnvironmentText.h"
#include "Platform/MountTable.h"

namespace orbel::platform {

ExecResolver systemExecResolver(const std::string& home) {
    auto resolver = execResolver(home, environmentText("PATH"), environmentText("XDG_DATA_HOME"));
    for (auto& mount : mountTable())
        // A mount on the root would put everything out of reach, and what runs us is reachable.
        if (mount.isNetwork && mount.path != "/")
            resolver.outOfReach.push_back(std::move(mount.path));
    return resolver;
}

} // namespace orbel::platform
