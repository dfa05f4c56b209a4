#pragma once

#include "Util/RawValue.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// The package that a file belongs to.
struct PackageOwner {
    enum class Manager : std::uint8_t { dpkg, rpm, pacman };

    Manager manager = Manager::dpkg;
    std::string name;
    std::string version{};
    bool isEssential = false;             ///< the system does not work without it
    std::optional<std::uint64_t> bytes{}; ///< on the disk, as the package says

    bool operator==(const PackageOwner&) const = default;
};

/// Runs a program, its name first, and gives what it printed; absent when it cannot be run or does
/// not end soon.
using RunProgram = std::function<std::optional<std::string>(const std::vector<std::string>& words)>;

} // namespace orbel::platform

template <>
struct orbel::RawValues<orbel::platform::PackageOwner::Manager> {
    static constexpr std::array<std::string_view, 3> names{"dpkg", "rpm", "pacman"};
};

namespace orbel::platform {

/// Where the package managers keep what they know.
struct PackageDatabases {
    std::string dpkg = "/var/lib/dpkg";
    std::string pacman = "/var/lib/pacman/local";
    std::vector<std::string> rpm{"/usr/lib/sysimage/rpm", "/var/lib/rpm"}; ///< only whether they exist
};

/// The owners of those of `paths` that have one, all looked up in one go. Reads the databases of dpkg and
/// pacman themselves; only rpm's has to be asked for, with `run`. Files in /bin, /sbin and /lib count as
/// those in /usr.
std::map<std::string, PackageOwner> packageOwners(const std::set<std::string>& paths,
                                                  const PackageDatabases& databases, const RunProgram& run);

/// What each package that dpkg has installed takes on the disk, as the packages say, by its name alone and
/// with its architecture, "name:amd64".
std::map<std::string, std::uint64_t> dpkgSizes(const std::string& database);

/// The same of pacman, by name.
std::map<std::string, std::uint64_t> pacmanSizes(const std::string& database);

/// The names of all packages that are installed, by the raw name of their manager; those that have none, or
/// cannot be asked, are not there.
std::map<std::string, std::set<std::string>> installedPackages(const PackageDatabases& databases,
                                                               const RunProgram& run);

/// The command that removes a package; empty for a name that no package can have.
std::string removalCommand(const PackageOwner& owner);

} // namespace orbel::platform
