#include "Platform/Linux/Portable/LauncherFiles.h"

#include "Util/PathText.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".desktop";
constexpr std::size_t mostFiles = 20'000;
constexpr int mostLevels = 8;

/// The relative paths of the launchers in a folder, sorted.
std::vector<std::string> launchersIn(const std::string& folder, PathResolver& paths) {
    std::vector<std::string> names;
    if (!paths.resolve(folder).isFound())
        return names;
    std::error_code error;
    fs::recursive_directory_iterator entries(folder, fs::directory_options::skip_permission_denied, error);
    for (; !error && entries != fs::recursive_directory_iterator() && names.size() < mostFiles;
         entries.increment(error)) {
        const auto path = entries->path().string();
        const bool isInReach = paths.resolve(path).isFound();
        if (entries.depth() >= mostLevels || !isInReach)
            entries.disable_recursion_pending();
        if (isInReach && path.ends_with(ending) && lastPathComponent(path) != ending)
            names.push_back(path.substr(joinedPath(folder, "x").size() - 1));
    }
    std::ranges::sort(names);
    return names;
}

std::string idOf(std::string relative) {
    std::ranges::replace(relative, '/', '-');
    relative.resize(relative.size() - ending.size());
    return relative;
}

} // namespace

std::vector<LauncherFile> launcherFiles(std::span<const std::string> folders, const ExecResolver& resolver) {
    std::vector<LauncherFile> found;
    std::map<std::string, std::size_t, std::less<>> known;
    std::set<std::string, std::less<>> hidden;
    auto paths = resolver.paths();
    for (const auto& folder : folders)
        for (const auto& name : launchersIn(folder, paths)) {
            const auto path = joinedPath(folder, name);
            const auto id = idOf(name);
            if (hidden.contains(id))
                continue;
            if (const auto first = known.find(id); first != known.end()) {
                found[first->second].shadowed.push_back(path);
                continue;
            }
            auto entry = DesktopEntry::read(path);
            if (!entry)
                continue;
            const auto target = resolver.resolve(*entry);
            if (!target) {
                hidden.insert(id);
                continue;
            }
            known.emplace(id, found.size());
            std::error_code error;
            auto program = target->state == LauncherTarget::State::found
                               ? fs::canonical(target->program, error).string()
                               : std::string();
            auto command = execCommand(entry->text("Exec").value_or(""));
            found.push_back({.path = path,
                             .id = id,
                             .entry = *std::move(entry),
                             .command = std::move(command),
                             .target = *target,
                             .program = std::move(program),
                             .shadowed = {}});
        }
    return found;
}

} // namespace orbel::platform
