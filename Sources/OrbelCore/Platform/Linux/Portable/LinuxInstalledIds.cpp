#include "Platform/Linux/Portable/LinuxInstalledIds.h"

#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t mostEntryBytes = 1024 * 1024;
constexpr std::size_t mostEntries = 20'000;
constexpr int mostLevels = 8;

/// The names in a folder; none for one that is not there, absent for one that cannot be read to its end.
std::optional<std::vector<std::string>> namesIn(const std::string& folder, PathResolver& paths) {
    const auto resolved = paths.resolve(folder);
    if (!resolved.isFound())
        return resolved.state == ResolvedPath::State::missing ? std::optional(std::vector<std::string>())
                                                              : std::nullopt;
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entries(resolved.path, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error))
        names.push_back(entries->path().filename().string());
    return error ? std::nullopt : std::optional(std::move(names));
}

class Collector {
public:
    explicit Collector(const InstalledIdSearch& search) : search_(search), paths_(search.resolver.paths()) {}

    InstalledIds ids() {
        found_.packages = installedPackages(search_.databases, search_.run);
        if (auto flatpaks = flatpakIds())
            found_.packages["flatpak"] = *std::move(flatpaks);
        if (auto snaps = snapNames())
            found_.packages["snap"] = *std::move(snaps);
        for (const auto& folder : search_.resolver.searchPath)
            addPrograms(folder);
        for (const auto& folder : search_.entryFolders)
            addEntries(folder);
        for (const auto& folder : search_.namedFolders)
            addNames(folder);
        return std::move(found_);
    }

private:
    std::optional<std::set<std::string>> flatpakIds() {
        if (!search_.resolver.knowsAllInstallations)
            return std::nullopt;
        for (const auto& named : search_.resolver.namedInstallations)
            if (!paths_.resolve(named).isFound())
                return std::nullopt;
        std::set<std::string> ids;
        for (const auto& installation : search_.resolver.flatpakInstallations)
            for (const auto* kind : {"app", "runtime"}) {
                const auto names = namesIn(joinedPath(installation, kind), paths_);
                if (!names)
                    return std::nullopt;
                ids.insert(names->begin(), names->end());
            }
        return ids;
    }

    std::optional<std::set<std::string>> snapNames() {
        std::set<std::string> snaps;
        for (const auto& folder : search_.resolver.snapFolders) {
            const auto names = namesIn(folder, paths_);
            if (!names)
                return std::nullopt;
            snaps.insert(names->begin(), names->end());
        }
        const auto files = namesIn(search_.snapFiles, paths_);
        if (!files)
            return std::nullopt;
        for (const auto& file : *files)
            if (file.ends_with(".snap"))
                snaps.insert(file.substr(0, file.rfind('_')));
        // A further instance, NAME_KEY, needs the places of NAME as well.
        std::set<std::string> bases;
        for (const auto& snap : snaps)
            bases.insert(snap.substr(0, snap.find('_')));
        snaps.merge(bases);
        return snaps;
    }

    void addPrograms(const std::string& folder) {
        for (const auto& name : namesIn(folder, paths_).value_or(std::vector<std::string>())) {
            auto program = joinedPath(folder, name);
            std::error_code error;
            if (!paths_.isOutOfReach(program) && fs::is_symlink(fs::symlink_status(program, error)))
                addPath(std::move(program));
            found_.names.insert(name);
        }
    }

    void addEntries(const std::string& folder) {
        const auto resolved = paths_.resolve(folder);
        found_.isComplete &= resolved.isFound() || resolved.state == ResolvedPath::State::missing;
        if (!resolved.isFound())
            return;
        std::error_code error;
        fs::recursive_directory_iterator entries(resolved.path, error);
        for (; !error && entries != fs::recursive_directory_iterator() && entries_ < mostEntries;
             entries.increment(error)) {
            const auto path = entries->path().string();
            if (entries.depth() >= mostLevels || paths_.isOutOfReach(path))
                entries.disable_recursion_pending();
            // Beside them lie lists, in which what was removed stays.
            if (!path.ends_with(".desktop") && !path.ends_with(".service"))
                continue;
            const auto file = paths_.resolve(path);
            if (!file.isFound())
                continue;
            ++entries_;
            const auto name = entries->path().filename().string();
            found_.names.insert(name);
            addWords(name); // of "ID@.service" too
            if (const auto text = readRegularFile(file.path, mostEntryBytes))
                addWords(*text);
        }
        found_.isComplete &= !error && entries_ < mostEntries;
    }

    /// An id may be the value of several keys, or an argument of another program, which starts it.
    void addWords(std::string_view text) {
        constexpr std::string_view between = " \t\r\n=;,:\"'[]%@";
        while (!text.empty()) {
            const auto end = std::min(text.find_first_of(between), text.size());
            const auto word = text.substr(0, end);
            if (word.starts_with('/'))
                addPath(std::string(word));
            else if (word.contains('.'))
                found_.names.emplace(word);
            text.remove_prefix(std::min(end + 1, text.size()));
        }
    }

    void addPath(std::string path) {
        if (const auto resolved = paths_.resolve(path); resolved.isFound())
            found_.programs.insert(resolved.path);
        found_.programs.insert(std::move(path));
    }

    void addNames(const std::string& folder) {
        if (const auto star = folder.find("/*"); star != std::string::npos) {
            const auto above = folder.substr(0, star);
            for (const auto& name : namesIn(above, paths_).value_or(std::vector<std::string>()))
                addNames(joinedPath(above, name) + folder.substr(star + 2));
            return;
        }
        const auto resolved = paths_.resolve(folder);
        if (resolved.isFound() && !fs::is_directory(resolved.path))
            return; // a file beside the folders that the star stands for
        auto names = namesIn(folder, paths_);
        found_.isComplete &= names.has_value();
        if (names)
            found_.names.insert(std::make_move_iterator(names->begin()),
                                std::make_move_iterator(names->end()));
    }

    const InstalledIdSearch& search_;
    PathResolver paths_;
    InstalledIds found_;
    std::size_t entries_ = 0;
};

} // namespace

InstalledIdSearch installedIdSearch(const std::string& home, ExecResolver resolver,
                                    const BaseFolders& folders) {
    InstalledIdSearch search{.resolver = std::move(resolver)};
    auto data = foldersIn(folders.dataFolders);
    for (const auto* usual : {"/usr/local/share", "/usr/share", "/var/lib/snapd/desktop"})
        data.emplace_back(usual);
    for (const auto& installation : search.resolver.flatpakInstallations)
        data.push_back(joinedPath(installation, "exports/share"));
    for (const auto& folder : data)
        for (const auto* name :
             {"metainfo", "appdata", "glib-2.0/schemas", "icons", "icons/hicolor/*/apps", "pixmaps"})
            search.namedFolders.push_back(joinedPath(folder, name));

    data.push_back(joinedPath(home, ".local/share"));
    if (folders.dataHome.starts_with('/'))
        data.push_back(folders.dataHome);
    for (const auto& folder : data)
        for (const auto* name : {"applications", "dbus-1/services", "dbus-1/system-services", "systemd/user"})
            search.entryFolders.push_back(joinedPath(folder, name));
    auto config = foldersIn(folders.configFolders);
    config.insert(config.end(), {"/etc/xdg", joinedPath(home, ".config")});
    if (folders.configHome.starts_with('/'))
        config.push_back(folders.configHome);
    for (const auto& folder : config)
        for (const auto* name : {"autostart", "systemd/user"})
            search.entryFolders.push_back(joinedPath(folder, name));
    for (const auto* units : {"/etc/systemd/user", "/etc/systemd/system", "/usr/lib/systemd/user",
                              "/usr/lib/systemd/system", "/usr/local/lib/systemd/user"})
        search.entryFolders.emplace_back(units);
    return search;
}

InstalledIds linuxInstalledIds(const InstalledIdSearch& search) {
    return Collector(search).ids();
}

} // namespace orbel::platform
