#include "Platform/Linux/Portable/LinuxApplications.h"

#include "Platform/Linux/Portable/AppClassifier.h"
#include "Platform/Linux/Portable/AppFiles.h"
#include "Platform/Linux/Portable/AppImage.h"
#include "Platform/Linux/Portable/LauncherFiles.h"
#include "Util/PathText.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;
using Status = InstalledApp::Status;

void addOnce(std::vector<std::string>& list, std::string value) {
    if (!value.empty() && std::ranges::find(list, value) == list.end())
        list.push_back(std::move(value));
}

void addAll(std::vector<std::string>& list, const std::vector<std::string>& values) {
    for (const auto& value : values)
        addOnce(list, value);
}

/// Whether its program, or the last part of its id, is called as its package, the first of its names.
bool isCalledByPackage(const InstalledApp& app) {
    const auto isPackage = [&](std::string_view name) {
        return std::ranges::equal(name, app.names.front(), {},
                                  [](unsigned char c) { return std::tolower(c); });
    };
    return !app.names.empty()
           && (std::ranges::any_of(app.executables, isPackage, lastPathComponent)
               || std::ranges::any_of(app.identifiers, isPackage,
                                      [](std::string_view id) { return id.substr(id.rfind('.') + 1); }));
}

bool isLauncherFolder(std::string_view folder) {
    return lastPathComponent(folder) == "applications";
}

/// All launchers but those that start nothing.
std::vector<LauncherFile> usefulLaunchers(const LinuxApplicationSearch& search) {
    std::vector<std::string> folders;
    std::ranges::copy_if(search.folders, std::back_inserter(folders), isLauncherFolder);
    auto launchers = launcherFiles(folders, search.resolver);
    std::erase_if(launchers, [](const LauncherFile& launcher) {
        return launcher.target.state == LauncherTarget::State::missing;
    });
    return launchers;
}

std::map<std::string, PackageOwner> ownersOf(const std::vector<LauncherFile>& launchers,
                                             const LinuxApplicationSearch& search) {
    std::set<std::string> paths;
    for (const auto& launcher : launchers) {
        paths.insert(launcher.path);
        paths.insert(launcher.shadowed.begin(), launcher.shadowed.end());
        if (!launcher.program.empty())
            paths.insert(launcher.program);
    }
    return search.owners ? search.owners(paths) : std::map<std::string, PackageOwner>();
}

class Inventory {
public:
    explicit Inventory(const LinuxApplicationSearch& search)
        : search_(search),
          launchers_(usefulLaunchers(search)),
          classifier_(search, ownersOf(launchers_, search)) {
        for (const auto& launcher : launchers_)
            ++iconUses_[launcher.entry.text("Icon").value_or("")];
    }

    std::vector<InstalledApp> apps() {
        for (const auto& launcher : launchers_)
            add(launcher);
        for (const auto& folder : search_.folders)
            if (!isLauncherFolder(folder))
                addAppImages(folder);
        return finished();
    }

private:
    struct Found {
        InstalledApp app;
        std::vector<std::string> shownPrograms; ///< of the launchers in the menu
        std::vector<std::string> shownNames;
        bool isMainLauncher = false; ///< what speaks for it is called as its package
    };

    void add(const LauncherFile& launcher) {
        auto [key, app] = classifier_.of(launcher);
        const bool isHidden = launcher.entry.isTrue("NoDisplay");
        const auto name = shownName(launcher.entry.text("Name").value_or(""));
        const auto shown = name.empty() ? shownName(launcher.id) : name;
        app.name = shown;
        app.isHidden = isHidden;
        app.icon = launcher.entry.text("Icon").value_or("");
        if (!app.bundleID)
            app.bundleID = shownName(launcher.id);
        addOnce(app.identifiers, launcher.id);
        const auto scripts = scriptsOf(launcher);
        addAll(app.executables, scripts);
        addNames(launcher, app);
        if (app.status == Status::removable) {
            const bool hasOwnIcon = iconUses_[launcher.entry.text("Icon").value_or("")] == 1;
            app.ownFiles = appFiles(app.path, launcher, hasOwnIcon, search_.home, search_.user,
                                    search_.resolver.paths());
        }
        auto& found = merge(key, std::move(app));
        if (!isHidden) {
            auto program = launcher.program;
            for (const auto& script : scripts)
                if (isPathInside(script, found.app.path))
                    program += "\n" + script;
            addOnce(found.shownPrograms, std::move(program));
            addOnce(found.shownNames, shown);
        }
    }

    /// What is in the home among a command's arguments: a script is started by its interpreter, and still
    /// needs its place.
    std::vector<std::string> scriptsOf(const LauncherFile& launcher) const {
        std::vector<std::string> scripts;
        if (launcher.command)
            for (const auto& argument : launcher.command->arguments)
                if (isPathInside(argument, search_.home) && argument.size() > search_.home.size())
                    addOnce(scripts, argument);
        return scripts;
    }

    static void addNames(const LauncherFile& launcher, InstalledApp& app) {
        const bool isSandboxed = !app.dataFolders.empty();
        if (isSandboxed)
            return;
        // A program that is not its own, such as an interpreter, gives it no name.
        if (std::ranges::find(app.executables, launcher.program) != app.executables.end()) {
            addOnce(app.names, appImageName(lastPathComponent(launcher.program)).name);
            addOnce(app.names, appImageName(lastPathComponent(launcher.target.program)).name);
        }
        addOnce(app.names, launcher.entry.text("StartupWMClass").value_or(""));
        const auto icon = launcher.entry.text("Icon").value_or("");
        if (!icon.contains('/'))
            addOnce(app.names, icon);
        app.version = app.version ? app.version : launcher.entry.text("X-AppImage-Version");
    }

    Found& merge(const std::string& key, InstalledApp app) {
        const auto [place, isNew] = found_.try_emplace(key);
        auto& known = place->second.app;
        const bool isMain = isCalledByPackage(app);
        if (isNew) {
            known = std::move(app);
            place->second.isMainLauncher = isMain;
            return place->second;
        }
        // A launcher in the menu speaks for the application rather than one that is in none, and of those the
        // one that is called as its package.
        if (!app.isHidden && (known.isHidden || (isMain && !place->second.isMainLauncher))) {
            place->second.isMainLauncher = isMain;
            known.name = app.name;
            known.bundleID = app.bundleID;
            known.path = app.path;
            known.icon = app.icon;
            known.isHidden = false;
        }
        addAll(known.ownFiles, app.ownFiles);
        addAll(known.dataFolders, app.dataFolders);
        addAll(known.executables, app.executables);
        addAll(known.identifiers, app.identifiers);
        addAll(known.names, app.names);
        return place->second;
    }

    void addAppImages(const std::string& folder) {
        auto paths = search_.resolver.paths();
        const auto resolved = paths.resolve(folder);
        if (!resolved.isFound())
            return;
        std::error_code error;
        fs::directory_iterator files(resolved.path, error);
        for (; !error && files != fs::directory_iterator(); files.increment(error)) {
            const auto path = files->path().string();
            auto found = paths.resolve(path).isFound() ? classifier_.ofAppImage(path) : std::nullopt;
            if (!found)
                continue;
            if (const auto known = found_.find(found->key); known != found_.end()) {
                known->second.app.isHidden = false; // for everybody sees the file
                continue;
            }
            const auto [name, version] = appImageName(lastPathComponent(found->app.path));
            found->app.name = shownName(name);
            found->app.names = {name};
            found->app.version = version;
            merge(found->key, std::move(found->app));
        }
    }

    /// What the launcher in an AppImage says of it. One in the menu speaks first.
    void addEmbedded(InstalledApp& app) const {
        const auto embedded = embeddedLauncher(app.path, search_.run);
        if (!embedded)
            return;
        const auto& [id, entry] = *embedded;
        const bool isInMenu = app.bundleID.has_value();
        if (auto name = shownName(entry.text("Name").value_or("")); !isInMenu && !name.empty())
            app.name = std::move(name);
        if (!isInMenu)
            app.bundleID = shownName(id);
        addOnce(app.identifiers, id);
        addOnce(app.names, entry.text("StartupWMClass").value_or(""));
        if (auto version = entry.text("X-AppImage-Version"))
            app.version = std::move(version);
    }

    std::vector<InstalledApp> finished() {
        std::vector<InstalledApp> apps;
        apps.reserve(found_.size());
        for (auto& [key, found] : found_) {
            auto& app = found.app;
            if (app.source == "AppImage")
                addEmbedded(app);
            if (app.status == Status::removable && found.shownPrograms.size() > 1) {
                // Removing one would remove the others.
                app.status = Status::unsupported;
                app.reason = "Several applications are in this folder:";
                for (const auto& name : found.shownNames)
                    app.reason += (name == found.shownNames.front() ? " " : ", ") + name;
            }
            apps.push_back(std::move(app));
        }
        return apps;
    }

    const LinuxApplicationSearch& search_;
    std::vector<LauncherFile> launchers_;
    AppClassifier classifier_;
    std::map<std::string, int> iconUses_; ///< in how many launchers
    std::map<std::string, Found> found_;
};

} // namespace

std::vector<std::string> linuxApplicationFolders(const std::string& home, std::string_view dataHome,
                                                 std::string_view dataFolders,
                                                 std::span<const std::string> programFileFolders) {
    std::vector<std::string> folders;
    const auto addData = [&](std::string_view folder) {
        if (folder.starts_with('/'))
            addOnce(folders, joinedPath(folder, "applications"));
    };
    addData(dataHome);
    addData(joinedPath(home, ".local/share"));
    std::ranges::for_each(foldersIn(dataFolders.empty() ? "/usr/local/share:/usr/share" : dataFolders),
                          addData);
    addData(joinedPath(home, ".local/share/flatpak/exports/share"));
    addData("/var/lib/flatpak/exports/share");
    addData("/var/lib/snapd/desktop");
    for (const auto& folder : programFileFolders)
        if (folder.starts_with('/'))
            addOnce(folders, folder);
    return folders;
}

std::vector<InstalledApp> linuxApplications(const LinuxApplicationSearch& search) {
    return Inventory(search).apps();
}

} // namespace orbel::platform
