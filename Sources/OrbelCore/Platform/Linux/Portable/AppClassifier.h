#pragma once

#include "Platform/InstalledApp.h"
#include "Platform/Linux/Portable/LauncherFiles.h"
#include "Platform/Linux/Portable/LinuxApplications.h"
#include "Platform/Linux/Portable/PackageOwners.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace orbel::platform {

/// A name for people: valid text on one line.
std::string shownName(std::string_view name);

/// What an application is and where it came from. Its name, and what is named after it, are not filled in.
struct ClassifiedApp {
    std::string key; ///< the same for all launchers of one application
    InstalledApp app;
};

/// Tells what launchers and files are, by the first of these that holds: a sandbox of its own, a package that
/// owns the launcher, something else that has to remove it, a file or folder of the user's own, a package
/// whose launcher this one takes the place of. Immutable; only reads the disk.
class AppClassifier {
public:
    /// `search` must live as long as this.
    AppClassifier(const LinuxApplicationSearch& search, std::map<std::string, PackageOwner> owners)
        : search_(search), owners_(std::move(owners)) {}

    ClassifiedApp of(const LauncherFile& launcher) const;
    /// Absent for a file that is no AppImage.
    std::optional<ClassifiedApp> ofAppImage(const std::string& program) const;

private:
    std::optional<ClassifiedApp> flatpak(const LauncherFile& launcher) const;
    std::optional<ClassifiedApp> snap(const LauncherFile& launcher) const;
    ClassifiedApp package(const LauncherFile& launcher, const PackageOwner& owner) const;
    /// Web pages, games and Windows programs.
    static std::optional<ClassifiedApp> startedByAnother(const LauncherFile& launcher);
    std::optional<ClassifiedApp> unpacked(const std::string& program) const;
    /// Sets the status of what lies in `path`, which may or may not be the user's.
    void decide(InstalledApp& app) const;
    const PackageOwner* ownerOf(const std::string& path) const;
    /// The package of a launcher that this one takes the place of.
    const PackageOwner* shadowedOwner(const LauncherFile& launcher) const;

    const LinuxApplicationSearch& search_;
    std::map<std::string, PackageOwner> owners_;
};

} // namespace orbel::platform
