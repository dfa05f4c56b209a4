#pragma once

#include "Find/InstalledApp.h"
#include "Find/LeftoverMatcher.h"
#include "Platform/InstalledIds.h"
#include "Platform/Linux/Portable/ExecResolver.h"
#include "Platform/Linux/Portable/PackageOwners.h"
#include "Support/MoverHome.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::test {

/// A home folder with applications as a Linux desktop has them.
class AppHome : public MoverHome {
public:
    /// An AppImage that starts nothing, as far as its head goes.
    std::string appImage(std::string_view relative) const;
    /// One that carries the file system in this file.
    std::string appImage(std::string_view relative, const std::string& squashfs) const;
    /// An executable file.
    std::string program(std::string_view relative) const;
    /// A launcher in the user's menu, with further lines.
    std::string launcher(std::string_view id, const std::string& exec, std::string_view more = "") const;
    /// One in what stands for the system's menu.
    std::string systemLauncher(std::string_view id, const std::string& exec,
                               std::string_view more = "") const;

    /// The inventory, in an order that does not depend on the disk. Packages own what `owners` says.
    std::vector<InstalledApp> inventory() const;
    /// The application of that name; fails the test when there is none.
    InstalledApp app(std::string_view name) const;
    /// All others.
    std::vector<InstalledApp> othersThan(const InstalledApp& app) const;
    LeftoverMatcher matcher() const;
    /// What is installed: as the inventory has it; the packages of a database of dpkg's in "dpkg".
    platform::InstalledIds installedIds() const;

    std::map<std::string, platform::PackageOwner> owners;
    std::map<std::string, std::string> otherPrograms; ///< by name, programs that are no applications
    std::vector<std::string> namedInstallations;      ///< of flatpak
    std::uint32_t user;

    AppHome();

private:
    platform::ExecResolver resolver() const;
};

} // namespace orbel::test
