#include "Platform/Linux/Portable/ExecResolver.h"

#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;
using enum LauncherTarget::State;

/// Where volumes are mounted that are not always there.
constexpr std::array<std::string_view, 6> removablePlaces{"/media",    "/mnt", "/run/media",
                                                          "/run/user", "/net", "/Volumes"};

constexpr std::array<std::string_view, 9> usualPrograms{"/usr/local/sbin",  "/usr/local/bin", "/usr/sbin",
                                                        "/usr/bin",         "/sbin",          "/bin",
                                                        "/usr/local/games", "/usr/games",     "/snap/bin"};

bool isAnyInside(const auto& folders, std::string_view path) {
    return std::ranges::any_of(folders, [&](std::string_view folder) { return isPathInside(path, folder); });
}

/// Flatpak's installations besides the user's and the system's. False when not all could be read.
bool addFurtherInstallations(std::vector<std::string>& installations) {
    bool isComplete = true;
    std::error_code error;
    fs::directory_iterator files("/etc/flatpak/installations.d", error);
    if (error == std::errc::no_such_file_or_directory)
        return true;
    for (; !error && files != fs::directory_iterator(); files.increment(error)) {
        const auto content = readRegularFile(files->path().string(), 1024 * 1024);
        isComplete &= content.has_value();
        const auto list = DesktopEntry::parse(content.value_or(""));
        for (const auto& group : list.groups())
            if (auto path = list.text("Path", group); path && path->starts_with('/'))
                installations.push_back(*std::move(path));
    }
    return isComplete && !error;
}

/// Whether a program lies at the path. In doubt, `unknown`: also for what is missing where volumes
/// come and go.
LauncherTarget::State stateOf(const std::string& path, PathResolver& paths) {
    const auto resolved = paths.resolve(path);
    if (resolved.isFound()) {
        struct stat status {};
        const bool isProgram = ::stat(resolved.path.c_str(), &status) == 0 && S_ISREG(status.st_mode)
                               && ::access(resolved.path.c_str(), X_OK) == 0;
        return isProgram ? found : unknown;
    }
    return resolved.state == ResolvedPath::State::missing && !isAnyInside(removablePlaces, resolved.path)
               ? missing
               : unknown;
}

} // namespace

LauncherTarget ExecResolver::resolve(std::string_view exec) const {
    const auto command = execCommand(exec);
    return command ? resolve(*command) : LauncherTarget{.state = unknown, .program = std::string(exec)};
}

std::optional<LauncherTarget> ExecResolver::resolve(const DesktopEntry& entry) const {
    const auto exec = entry.text("Exec");
    if (!exec || entry.text("Type") != "Application" || entry.isTrue("Hidden"))
        return std::nullopt;
    auto target = resolve(*exec);
    // It says itself when it is to be hidden: that is no fault.
    if (target.state == missing && entry.text("TryExec"))
        target.state = unknown;
    return target;
}

LauncherTarget ExecResolver::resolve(const ExecCommand& command) const {
    if (command.kind == ExecCommand::Kind::program) {
        if (command.name.find('/') == std::string::npos)
            return inSearchPath(command.name);
        auto reach = paths();
        return {.state = command.name.starts_with('/') ? stateOf(command.name, reach) : unknown,
                .program = command.name};
    }
    auto reach = paths();
    const bool isFlatpak = command.kind == ExecCommand::Kind::flatpak;
    LauncherTarget target{.state = isFlatpak && !knowsAllInstallations ? unknown : missing,
                          .program = command.name};
    for (const auto& folder : isFlatpak ? flatpakInstallations : snapFolders) {
        const auto path = joinedPath(folder, isFlatpak ? "app/" + command.name : command.name);
        const auto resolved = reach.resolve(path);
        if (resolved.isFound())
            return {.state = found, .program = path};
        const bool mayBeElsewhere = isFlatpak && std::ranges::count(namedInstallations, folder) > 0
                                    && !reach.resolve(folder).isFound();
        if (resolved.state != ResolvedPath::State::missing || mayBeElsewhere)
            target.state = unknown;
    }
    return target;
}

LauncherTarget ExecResolver::inSearchPath(const std::string& name) const {
    LauncherTarget target{.state = missing, .program = name};
    auto reach = paths();
    for (const auto& folder : searchPath) {
        auto path = joinedPath(folder, name);
        const auto state = stateOf(path, reach);
        if (state == found)
            return {.state = found, .program = std::move(path)};
        if (state == unknown)
            target.state = unknown;
    }
    return target;
}

std::vector<std::string> foldersIn(std::string_view list) {
    std::vector<std::string> folders;
    while (!list.empty()) {
        const auto end = std::min(list.find(':'), list.size());
        if (list.starts_with('/'))
            folders.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return folders;
}

ExecResolver execResolver(const std::string& home, std::string_view path, std::string_view dataHome,
                          std::span<const std::string> flatpakVariables) {
    ExecResolver resolver;
    const auto addFolder = [&](std::string_view folder) {
        if (folder.starts_with('/')
            && std::ranges::find(resolver.searchPath, folder) == resolver.searchPath.end())
            resolver.searchPath.emplace_back(folder);
    };
    std::ranges::for_each(foldersIn(path), addFolder);
    std::ranges::for_each(usualPrograms, addFolder);
    for (const auto* inHome : {".local/bin", "bin"})
        addFolder(joinedPath(home, inHome));
    resolver.flatpakInstallations = {joinedPath(home, ".local/share/flatpak"), "/var/lib/flatpak"};
    if (dataHome.starts_with('/'))
        resolver.flatpakInstallations.push_back(joinedPath(dataHome, "flatpak"));
    std::ranges::copy_if(flatpakVariables, std::back_inserter(resolver.namedInstallations),
                         [](const std::string& folder) { return folder.starts_with('/'); });
    resolver.knowsAllInstallations = addFurtherInstallations(resolver.namedInstallations);
    resolver.flatpakInstallations.insert(resolver.flatpakInstallations.end(),
                                         resolver.namedInstallations.begin(),
                                         resolver.namedInstallations.end());
    resolver.snapFolders = {"/snap", "/var/lib/snapd/snap"};
    for (const auto& folder : {resolver.flatpakInstallations[0], resolver.flatpakInstallations[1]})
        addFolder(joinedPath(folder, "exports/bin"));
    return resolver;
}

} // namespace orbel::platform
