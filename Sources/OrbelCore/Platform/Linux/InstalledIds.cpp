#include "Platform/InstalledIds.h"

#include "Platform/Linux/EnvironmentText.h"
#include "Platform/Linux/Portable/LinuxInstalledIds.h"
#include "Platform/Linux/ProgramOutput.h"
#include "Platform/Linux/SystemExecResolver.h"

namespace orbel::platform {

InstalledIds installedIds(const std::string& home) {
    auto search = installedIdSearch(home, systemExecResolver(home),
                                    {.dataHome = environmentText("XDG_DATA_HOME"),
                                     .dataFolders = environmentText("XDG_DATA_DIRS"),
                                     .configHome = environmentText("XDG_CONFIG_HOME"),
                                     .configFolders = environmentText("XDG_CONFIG_DIRS")});
    search.run = programOutput;
    return linuxInstalledIds(search);
}

} // namespace orbel::platform
