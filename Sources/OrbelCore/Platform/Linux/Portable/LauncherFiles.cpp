#include "Platform/Linux/Portable/LauncherFiles.h"

#include "Util/PathText.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".desktop";
constexpr std::size_t mostFiles = 20'000;
constexpr int mostLevels = 8;

/// The relative paths of the launchers in a folder, sorted.
std::vector<std::string> launchersIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    fs::recursive_directory_iterator entries(folder, fs::directory_options::skip_permission_denied, error);
    for (; !error && entries != fs::recursive_directory_iterator() && names.size() < mostFiles;
         entries.increment(error)) {
        if (entries.depth() >= mostLevels)
            entries.disable_recursion_pending();
        const auto path = entries->path().string();
        if (path.ends_with(ending) && lastPathComponent(path) != ending)
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
    std::map<std::string, std::optional<std::size_t>, std::less<>> known; // absent: hidden
    for (const auto& folder : folders)
        for (const auto& name : launchersIn(folder)) {
            const auto path = joinedPath(folder, name);
            const auto id = idOf(name);
            if (const auto first = known.find(id); first != known.end()) {
                if (first->second)
                    found[*first->second].shadowed.push_back(path);
                continue;
            }
            auto entry = DesktopEntry::read(path);
            if (!entry)
                continue;
            const auto target = resolver.resolve(*entry);
            known.emplace(id, target ? std::optional(found.size()) : std::nullopt);
            if (!target)
                continue;
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
