#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// Storage outside the homes that a command of its own programs frees. Nothing here runs one.
struct SystemPlace {
    std::string path;        ///< the folder that holds it
    std::uint64_t bytes = 0; ///< what the command frees, as far as that can be known
    bool isUpTo = false;     ///< it frees at most that
    std::string what;        ///< for people: "Downloaded packages"
    std::string command;     ///< for a shell, on one line, with all names quoted

    bool operator==(const SystemPlace&) const = default;
};

/// The commands that need no name.
namespace freeing {
inline constexpr std::string_view aptPackages = "sudo apt clean";
inline constexpr std::string_view aptOrphans = "sudo apt autoremove --purge";
inline constexpr std::string_view dnfPackages = "sudo dnf clean packages";
inline constexpr std::string_view pacmanPackages = "sudo pacman -Sc";
inline constexpr std::string_view pacmanOrphans = "sudo pacman -Rns $(pacman -Qdtq)";
inline constexpr std::string_view journal = "sudo journalctl --vacuum-size=200M";
inline constexpr std::string_view flatpakRuntimes = "flatpak uninstall --unused";
inline constexpr std::string_view dockerStorage = "docker system prune";
inline constexpr std::string_view podmanStorage = "podman system prune";
inline constexpr std::string_view systemPodmanStorage = "sudo podman system prune";
} // namespace freeing

/// What a folder takes on the disk.
struct FolderSize {
    std::uint64_t bytes = 0;
    bool isComplete = false; ///< all in it could be read
};
using MeasureFolder = std::function<FolderSize(const std::string& path)>;

/// All such places of this system, small ones too. `home`: of the user, whose programs may need what lies
/// there. Asks the package managers, each for 10 seconds at most, and measures; leaves out what could only be
/// guessed because it may not be read, and what is out of reach. Blocks.
std::vector<SystemPlace> systemPlaces(const std::string& home, const MeasureFolder& measure);

} // namespace orbel::platform
