#include "Platform/Applications.h"

#include "Platform/Linux/EnvironmentText.h"
#include "Platform/Linux/Portable/LinuxApplications.h"
#include "Platform/Linux/ProgramOutput.h"
#include "Platform/Linux/SystemExecResolver.h"
#include "Platform/Places.h"

#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace orbel::platform {

std::vector<std::string> applicationSearchFolders(const std::string& home) {
    return linuxApplicationFolders(home, environmentText("XDG_DATA_HOME"), environmentText("XDG_DATA_DIRS"),
                                   places(home).programFileFolders);
}

std::vector<InstalledApp> installedApplications(const std::string& home, std::span<const std::string> folders,
                                                const std::function<bool(const std::string&)>& isWritable) {
    return linuxApplications(
        {.home = home,
         .folders = {folders.begin(), folders.end()},
         .programFolders = places(home).programFolders,
         .resolver = systemExecResolver(home),
         .owners = [](const std::set<std::string>& paths) { return packageOwners(paths, {}, programOutput); },
         .isWritable = isWritable,
         .user = ::geteuid(),
         .run = programOutput});
}

ProgramFinder programFinder(const std::string& home) {
    return [resolver = systemExecResolver(home)](const std::string& name) {
        const auto target =
            resolver.resolve(ExecCommand{.kind = ExecCommand::Kind::program, .name = name, .arguments = {}});
        std::error_code error;
        return target.state == LauncherTarget::State::found
                   ? std::filesystem::canonical(target.program, error).string()
                   : std::string();
    };
}

} // namespace orbel::platform
