#include "Platform/Linux/Portable/LinuxApplications.h"

#include "Platform/FileStatus.h"
#include "Platform/Linux/Portable/AppImage.h"
#include "Platform/Linux/Portable/LauncherFiles.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;
using Status = InstalledApp::Status;
using Manager = PackageOwner::Manager;

/// A name for people: valid text on one line.
std::string shownName(std::string_view name) {
    auto shown = lossyUtf8(name);
    std::ranges::replace_if(
        shown, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
    return shown;
}

/// Whether a word can stand in a command that is made to be pasted into a shell.
bool isPlainWord(std::string_view word) {
    const auto isPlain = [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '.' || c == '_' || c == '-';
    };
    return !word.empty() && !word.starts_with('-') && word != "." && word != ".."
           && std::ranges::all_of(word, isPlain);
}

void addOnce(std::vector<std::string>& list, std::string value) {
    if (!value.empty() && std::ranges::find(list, value) == list.end())
        list.push_back(std::move(value));
}

void addAll(std::vector<std::string>& list, const std::vector<std::string>& values) {
    for (const auto& value : values)
        addOnce(list, value);
}

/// "Tool" of "Tool.AppImage".
std::string_view withoutAppImageEnding(std::string_view name) {
    for (const std::string_view ending : {".AppImage", ".appimage"})
        if (name.ends_with(ending) && name.size() > ending.size())
            return name.substr(0, name.size() - ending.size());
    return name;
}

class Inventory {
public:
    explicit Inventory(const LinuxApplicationSearch& search) : search_(search) {}

    std::vector<InstalledApp> apps() {
        std::vector<std::string> launcherFolders;
        std::ranges::copy_if(search_.folders, std::back_inserter(launcherFolders), isLauncherFolder);
        launchers_ = launcherFiles(launcherFolders, search_.resolver);
        std::erase_if(launchers_, [](const LauncherFile& launcher) {
            return launcher.target.state == LauncherTarget::State::missing;
        });
        askForOwners();
        for (const auto& launcher : launchers_)
            ++iconUses_[launcher.entry.text("Icon").value_or("")];
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
    };

    static bool isLauncherFolder(std::string_view folder) {
        return lastPathComponent(folder) == "applications";
    }

    void askForOwners() {
        std::set<std::string> paths;
        for (const auto& launcher : launchers_) {
            paths.insert(launcher.path);
            paths.insert(launcher.shadowed.begin(), launcher.shadowed.end());
            if (!launcher.program.empty())
                paths.insert(launcher.program);
        }
        if (search_.owners)
            owners_ = search_.owners(paths);
    }

    const PackageOwner* ownerOf(const std::string& path) const {
        const auto owner = owners_.find(path);
        return owner == owners_.end() ? nullptr : &owner->second;
    }

    /// The package of a launcher that this one takes the place of.
    const PackageOwner* shadowedOwner(const LauncherFile& launcher) const {
        for (const auto& path : launcher.shadowed)
            if (const auto* owner = ownerOf(path))
                return owner;
        return nullptr;
    }

    void add(const LauncherFile& launcher) {
        auto app = classified(launcher);
        const bool isHidden = launcher.entry.isTrue("NoDisplay");
        const auto name = shownName(launcher.entry.text("Name").value_or(launcher.id));
        app.name = name.empty() ? shownName(launcher.id) : name;
        app.isHidden = isHidden;
        if (!app.bundleID)
            app.bundleID = shownName(launcher.id);
        addOnce(app.identifiers, launcher.id);
        addNames(launcher, app);
        if (app.status == Status::removable)
            addOwnFiles(launcher, app);
        auto& found = merge(std::move(app));
        if (!isHidden) {
            addOnce(found.shownPrograms, launcher.program);
            addOnce(found.shownNames, found.app.name == name ? found.app.name : name);
        }
    }

    Found& merge(InstalledApp app) {
        const auto [place, isNew] = found_.try_emplace(keyOf_);
        auto& known = place->second.app;
        if (isNew) {
            known = std::move(app);
            return place->second;
        }
        // A launcher in the menu speaks for the application rather than one that is in none.
        if (known.isHidden && !app.isHidden) {
            known.name = app.name;
            known.bundleID = app.bundleID;
            known.isHidden = false;
        }
        addAll(known.ownFiles, app.ownFiles);
        addAll(known.dataFolders, app.dataFolders);
        addAll(known.executables, app.executables);
        addAll(known.identifiers, app.identifiers);
        addAll(known.names, app.names);
        return place->second;
    }

    /// What the application is and where it came from. Sets `keyOf_`, which launchers of one application
    /// share.
    InstalledApp classified(const LauncherFile& launcher) {
        if (auto app = flatpak(launcher))
            return *std::move(app);
        if (auto app = snap(launcher))
            return *std::move(app);
        if (const auto* owner = ownerOf(launcher.path))
            return package(launcher, *owner);
        if (auto app = startedByAnother(launcher))
            return *std::move(app);
        if (auto app = appImage(launcher.program))
            return *std::move(app);
        if (auto app = unpacked(launcher.program))
            return *std::move(app);
        if (const auto* owner = shadowedOwner(launcher))
            return package(launcher, *owner);
        keyOf_ = "launcher:" + launcher.path;
        InstalledApp app{.path = launcher.path, .name = {}};
        for (const std::string_view folder : {"/opt", "/usr/local"})
            if (isPathInside(launcher.program, folder)) {
                app.status = Status::needsAdmin;
                app.source = "Installed by hand";
                app.reason = "Lies in " + std::string(folder)
                             + " and belongs to no package: an administrator can remove it";
                app.executables = {launcher.program};
                return app;
            }
        app.source = "Launcher";
        app.reason =
            "A launcher of " + shownName(launcher.target.program) + ", which it is no installation of";
        return app;
    }

    std::optional<InstalledApp> flatpak(const LauncherFile& launcher) {
        auto id = launcher.entry.text("X-Flatpak").value_or("");
        if (id.empty() && launcher.command && launcher.command->kind == ExecCommand::Kind::flatpak)
            id = launcher.command->name;
        if (!isPlainWord(id))
            return std::nullopt;
        const auto userInstallation = joinedPath(search_.home, ".local/share/flatpak");
        const bool isUsers = isPathInside(launcher.path, userInstallation)
                             || (!isPathInside(launcher.path, "/var/lib/flatpak")
                                 && fileStatus(joinedPath(userInstallation, "app/" + id)).has_value());
        keyOf_ = (isUsers ? "flatpak user:" : "flatpak system:") + id;
        InstalledApp app{.path = launcher.path, .name = {}, .bundleID = id};
        app.status = isUsers ? Status::unsupported : Status::needsAdmin;
        app.source = isUsers ? "Flatpak (user)" : "Flatpak (system)";
        app.reason = "Remove it with Flatpak";
        app.command = (isUsers ? "flatpak uninstall --user " : "flatpak uninstall --system ") + id;
        app.identifiers = {id};
        app.dataFolders = {joinedPath(search_.home, ".var/app/" + id)};
        return app;
    }

    std::optional<InstalledApp> snap(const LauncherFile& launcher) {
        auto name = launcher.entry.text("X-SnapInstanceName").value_or("");
        if (name.empty() && launcher.command && launcher.command->kind == ExecCommand::Kind::snap)
            name = launcher.command->name;
        if (!isPlainWord(name))
            return std::nullopt;
        keyOf_ = "snap:" + name;
        InstalledApp app{.path = launcher.path, .name = {}, .status = Status::needsAdmin};
        app.source = "Snap";
        app.reason = "Remove it with Snap";
        app.command = "sudo snap remove " + name;
        app.dataFolders = {joinedPath(search_.home, "snap/" + name)};
        return app;
    }

    InstalledApp package(const LauncherFile& launcher, const PackageOwner& owner) {
        keyOf_ = "package:" + owner.name;
        InstalledApp app{.path = launcher.path, .name = {}, .version = owner.version};
        app.status = owner.isEssential ? Status::system : Status::needsAdmin;
        app.source = owner.manager == Manager::dpkg  ? "Debian package"
                     : owner.manager == Manager::rpm ? "RPM package"
                                                     : "Arch package";
        app.reason = owner.isEssential ? "A part of the system" : "Remove it with the package manager";
        if (!owner.isEssential)
            app.command = removalCommand(owner);
        app.names = {owner.name.substr(0, owner.name.find(':'))};
        if (const auto* programOwner = ownerOf(launcher.program);
            programOwner != nullptr && programOwner->name == owner.name)
            app.executables = {launcher.program};
        return app;
    }

    /// Web pages, games and Windows programs: what starts them has to remove them.
    std::optional<InstalledApp> startedByAnother(const LauncherFile& launcher) {
        if (!launcher.command)
            return std::nullopt;
        const auto hasArgument = [&](std::string_view beginning) {
            return std::ranges::any_of(launcher.command->arguments, [&](const std::string& argument) {
                return argument.starts_with(beginning);
            });
        };
        const auto program = lastPathComponent(launcher.command->name);
        InstalledApp app{.path = launcher.path, .name = {}};
        if (hasArgument("--app=") || hasArgument("--app-id=")) {
            app.source = "Web app";
            app.reason = "A web page with a window of its own: remove it in the browser";
        } else if (hasArgument("steam://")) {
            app.source = "Steam";
            app.reason = "Remove it in Steam";
        } else if (program.starts_with("wine")
                   || launcher.entry.text("Exec").value_or("").contains("WINEPREFIX=")) {
            app.source = "Wine";
            app.reason = "A Windows program: remove it with its own uninstaller";
        } else {
            return std::nullopt;
        }
        keyOf_ = "launcher:" + launcher.path;
        return app;
    }

    /// Sets the status of a program that lies in `path`, which may or may not be the user's.
    void decide(InstalledApp& app) const {
        const auto status = fileStatus(app.path);
        if (!isPathInside(app.path, search_.home)) {
            app.status = Status::needsAdmin;
            app.reason = "Lies outside the home folder and belongs to no package";
        } else if (!status || status->owner != search_.user) {
            app.status = Status::needsAdmin;
            app.reason = "Belongs to another user";
        } else if (!search_.isWritable(app.path) || !search_.isWritable(std::string(parentPath(app.path)))) {
            app.status = Status::needsAdmin;
            app.reason = "Cannot be changed without an administrator";
        } else {
            app.status = Status::removable;
        }
    }

    std::optional<InstalledApp> appImage(const std::string& program) {
        if (program.empty() || !isAppImage(program))
            return std::nullopt;
        keyOf_ = "path:" + program;
        InstalledApp app{.path = program, .name = {}, .source = "AppImage", .executables = {program}};
        decide(app);
        return app;
    }

    std::optional<InstalledApp> unpacked(const std::string& program) {
        for (const auto& folder : search_.programFolders) {
            if (!isPathInside(program, folder)
                || pathComponents(program).size() < pathComponents(folder).size() + 2)
                continue;
            const auto own = program.substr(joinedPath(folder, "x").size() - 1);
            InstalledApp app{.path = joinedPath(folder, own.substr(0, own.find('/'))),
                             .name = {},
                             .source = "Unpacked folder",
                             .executables = {program}};
            keyOf_ = "path:" + app.path;
            decide(app);
            return app;
        }
        return std::nullopt;
    }

    void addNames(const LauncherFile& launcher, InstalledApp& app) const {
        const bool isSandboxed = !app.dataFolders.empty();
        if (isSandboxed)
            return;
        // A program that is not its own, such as an interpreter, gives it no name.
        if (std::ranges::find(app.executables, launcher.program) != app.executables.end()) {
            addOnce(app.names, std::string(withoutAppImageEnding(lastPathComponent(launcher.program))));
            addOnce(app.names,
                    std::string(withoutAppImageEnding(lastPathComponent(launcher.target.program))));
        }
        addOnce(app.names, launcher.entry.text("StartupWMClass").value_or(""));
        const auto icon = launcher.entry.text("Icon").value_or("");
        if (!icon.contains('/'))
            addOnce(app.names, icon);
        app.version = app.version ? app.version : launcher.entry.text("X-AppImage-Version");
    }

    bool isUsersFile(const std::string& path) const {
        const auto status = fileStatus(path);
        return status && status->type == FileType::regular && status->owner == search_.user;
    }

    void addOwnFiles(const LauncherFile& launcher, InstalledApp& app) {
        const auto data = joinedPath(search_.home, ".local/share");
        if (parentPath(launcher.path) == joinedPath(data, "applications") && isUsersFile(launcher.path))
            addOnce(app.ownFiles, launcher.path);
        const auto icon = launcher.entry.text("Icon").value_or("");
        if (icon.empty() || iconUses_[icon] > 1)
            return;
        const auto icons = joinedPath(data, "icons");
        if (icon.starts_with('/')) {
            if (isPathInside(icon, icons) && isUsersFile(icon))
                addOnce(app.ownFiles, icon);
            return;
        }
        if (icon.contains('/'))
            return;
        std::vector<std::string> folders{icons};
        std::error_code error;
        fs::directory_iterator sizes(joinedPath(icons, "hicolor"), error);
        for (; !error && sizes != fs::directory_iterator(); sizes.increment(error))
            folders.push_back((sizes->path() / "apps").string());
        std::ranges::sort(folders);
        for (const auto& folder : folders)
            for (const auto* ending : {".png", ".svg", ".xpm"})
                if (auto path = joinedPath(folder, icon + ending); isUsersFile(path))
                    addOnce(app.ownFiles, std::move(path));
    }

    void addAppImages(const std::string& folder) {
        std::error_code error;
        fs::directory_iterator files(fs::canonical(folder, error), error);
        for (; !error && files != fs::directory_iterator(); files.increment(error)) {
            auto app = appImage(files->path().string());
            if (!app || found_.contains(keyOf_))
                continue;
            const auto name = std::string(withoutAppImageEnding(lastPathComponent(app->path)));
            app->name = shownName(name);
            app->names = {name};
            merge(*std::move(app));
        }
    }

    std::vector<InstalledApp> finished() {
        std::vector<InstalledApp> apps;
        apps.reserve(found_.size());
        for (auto& [key, found] : found_) {
            auto& app = found.app;
            if (app.status == Status::removable && found.shownPrograms.size() > 1) {
                // Whoever removes one would lose the others.
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
    std::map<std::string, PackageOwner> owners_;
    std::map<std::string, int> iconUses_; ///< in how many launchers
    std::string keyOf_;                   ///< of the application that was classified last
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
    if (dataFolders.empty())
        dataFolders = "/usr/local/share:/usr/share";
    while (!dataFolders.empty()) {
        const auto end = std::min(dataFolders.find(':'), dataFolders.size());
        addData(dataFolders.substr(0, end));
        dataFolders.remove_prefix(std::min(end + 1, dataFolders.size()));
    }
    addData(joinedPath(home, ".local/share/flatpak/exports/share"));
    addData("/var/lib/flatpak/exports/share");
    addData("/var/lib/snapd/desktop");
    for (const auto& folder : programFileFolders)
        addOnce(folders, folder);
    return folders;
}

std::vector<InstalledApp> linuxApplications(const LinuxApplicationSearch& search) {
    return Inventory(search).apps();
}

} // namespace orbel::platform
