#include "Platform/Linux/Portable/AppClassifier.h"

#include "Platform/FileStatus.h"
#include "Platform/Linux/Portable/AppImage.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <cctype>

namespace orbel::platform {

namespace {

using Status = InstalledApp::Status;
using Manager = PackageOwner::Manager;

/// Whether a word can stand in a command that is made to be pasted into a shell.
bool isPlainWord(std::string_view word) {
    const auto isPlain = [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '.' || c == '_' || c == '-';
    };
    return !word.empty() && !word.starts_with('-') && word != "." && word != ".."
           && std::ranges::all_of(word, isPlain);
}

} // namespace

std::string shownName(std::string_view name) {
    auto shown = lossyUtf8(name);
    std::ranges::replace_if(
        shown, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
    return shown;
}

ClassifiedApp AppClassifier::of(const LauncherFile& launcher) const {
    if (auto app = flatpak(launcher))
        return *std::move(app);
    if (auto app = snap(launcher))
        return *std::move(app);
    if (const auto* owner = ownerOf(launcher.path))
        return package(launcher, *owner);
    if (auto app = startedByAnother(launcher))
        return *std::move(app);
    if (auto app = ofAppImage(launcher.program))
        return *std::move(app);
    if (auto app = unpacked(launcher.program))
        return *std::move(app);
    if (const auto* owner = shadowedOwner(launcher))
        return package(launcher, *owner);
    std::string key = "launcher:" + launcher.path;
    InstalledApp app{.path = launcher.path, .name = {}};
    for (const std::string_view folder : {"/opt", "/usr/local"})
        if (isPathInside(launcher.program, folder)) {
            app.status = Status::needsAdmin;
            app.source = "Installed by hand";
            app.reason = "Lies in " + std::string(folder)
                         + " and belongs to no package: an administrator can remove it";
            app.executables = {launcher.program};
            return ClassifiedApp{.key = std::move(key), .app = std::move(app)};
        }
    app.source = "Launcher";
    app.reason = "Only starts " + shownName(launcher.target.program) + " and is no installation of its own";
    return ClassifiedApp{.key = std::move(key), .app = std::move(app)};
}

std::optional<ClassifiedApp> AppClassifier::flatpak(const LauncherFile& launcher) const {
    auto id = launcher.entry.text("X-Flatpak").value_or("");
    if (id.empty() && launcher.command && launcher.command->kind == ExecCommand::Kind::flatpak)
        id = launcher.command->name;
    if (!isPlainWord(id))
        return std::nullopt;
    const auto userInstallation = joinedPath(search_.home, ".local/share/flatpak");
    const bool isUsers = isPathInside(launcher.path, userInstallation)
                         || (!isPathInside(launcher.path, "/var/lib/flatpak")
                             && fileStatus(joinedPath(userInstallation, "app/" + id)).has_value());
    std::string key = (isUsers ? "flatpak user:" : "flatpak system:") + id;
    InstalledApp app{.path = launcher.path, .name = {}, .bundleID = id};
    app.status = isUsers ? Status::unsupported : Status::needsAdmin;
    app.source = isUsers ? "Flatpak (user)" : "Flatpak (system)";
    app.reason = "Remove it with Flatpak";
    app.command = (isUsers ? "flatpak uninstall --user " : "flatpak uninstall --system ") + id;
    app.manager = "flatpak";
    app.package = id;
    app.identifiers = {id};
    app.dataFolders = {joinedPath(search_.home, ".var/app/" + id)};
    app.programFolder = joinedPath(isUsers ? userInstallation : "/var/lib/flatpak", "app/" + id);
    return ClassifiedApp{.key = std::move(key), .app = std::move(app)};
}

std::optional<ClassifiedApp> AppClassifier::snap(const LauncherFile& launcher) const {
    auto name = launcher.entry.text("X-SnapInstanceName").value_or("");
    if (name.empty() && launcher.command && launcher.command->kind == ExecCommand::Kind::snap)
        name = launcher.command->name;
    if (!isPlainWord(name))
        return std::nullopt;
    std::string key = "snap:" + name;
    InstalledApp app{.path = launcher.path, .name = {}, .status = Status::needsAdmin};
    app.source = "Snap";
    app.reason = "Remove it with Snap";
    app.command = "sudo snap remove " + name;
    app.manager = "snap";
    app.package = name;
    app.dataFolders = {joinedPath(search_.home, "snap/" + name)};
    return ClassifiedApp{.key = std::move(key), .app = std::move(app)};
}

ClassifiedApp AppClassifier::package(const LauncherFile& launcher, const PackageOwner& owner) const {
    std::string key = "package:" + owner.name;
    InstalledApp app{.path = launcher.path, .name = {}, .version = owner.version};
    app.status = owner.isEssential ? Status::system : Status::needsAdmin;
    app.source = owner.manager == Manager::dpkg  ? "Debian package"
                 : owner.manager == Manager::rpm ? "RPM package"
                                                 : "Arch package";
    app.reason = owner.isEssential ? "A part of the system" : "Remove it with the package manager";
    if (!owner.isEssential)
        app.command = removalCommand(owner);
    app.manager = rawValue(owner.manager);
    app.package = owner.name.substr(0, owner.name.find(':'));
    app.packageBytes = owner.bytes;
    app.names = {app.package};
    if (const auto* programOwner = ownerOf(launcher.program);
        programOwner != nullptr && programOwner->name == owner.name)
        app.executables = {launcher.program};
    return ClassifiedApp{.key = std::move(key), .app = std::move(app)};
}

std::optional<ClassifiedApp> AppClassifier::startedByAnother(const LauncherFile& launcher) {
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
    std::string key = "launcher:" + launcher.path;
    return ClassifiedApp{.key = std::move(key), .app = std::move(app)};
}

void AppClassifier::decide(InstalledApp& app) const {
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

std::optional<ClassifiedApp> AppClassifier::ofAppImage(const std::string& program) const {
    if (program.empty() || !isAppImage(program))
        return std::nullopt;
    std::string key = "path:" + program;
    InstalledApp app{.path = program, .name = {}, .source = "AppImage", .executables = {program}};
    decide(app);
    return ClassifiedApp{.key = std::move(key), .app = std::move(app)};
}

std::optional<ClassifiedApp> AppClassifier::unpacked(const std::string& program) const {
    for (const auto& folder : search_.programFolders) {
        if (!isPathInside(program, folder)
            || pathComponents(program).size() < pathComponents(folder).size() + 2)
            continue;
        const auto own = program.substr(joinedPath(folder, "x").size() - 1);
        InstalledApp app{.path = joinedPath(folder, own.substr(0, own.find('/'))),
                         .name = {},
                         .source = "Unpacked folder",
                         .executables = {program}};
        std::string key = "path:" + app.path;
        decide(app);
        return ClassifiedApp{.key = std::move(key), .app = std::move(app)};
    }
    return std::nullopt;
}

const PackageOwner* AppClassifier::ownerOf(const std::string& path) const {
    const auto owner = owners_.find(path);
    return owner == owners_.end() ? nullptr : &owner->second;
}

const PackageOwner* AppClassifier::shadowedOwner(const LauncherFile& launcher) const {
    for (const auto& path : launcher.shadowed)
        if (const auto* owner = ownerOf(path))
            return owner;
    return nullptr;
}

} // namespace orbel::platform
