#pragma once

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

/// The command that removes a package; empty for a name that no package can have.
std::string removalCommand(const PackageOwner& owner);

} // namespace orbel::platform
