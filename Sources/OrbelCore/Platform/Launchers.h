#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orbel::platform {

/// What a launcher, a file that starts a program from a menu or at login, leads to.
struct LauncherTarget {
    enum class State : std::uint8_t {
        found,
        missing, ///< there is certainly no such program
        unknown  ///< it cannot be found out: another volume may be absent, something may not be looked at
    };

    State state = State::unknown;
    /// The program's path when it was found, else what the launcher names, for people to read; may be empty.
    std::string program{};

    bool operator==(const LauncherTarget&) const = default;
};

/// The folders with the launchers of the user, that start programs from the menu and at login. `home`: its
/// real path. Empty where launchers are no files.
std::vector<std::string> userLauncherFolders(const std::string& home);

/// What the launcher file at `path` starts; absent when it is no launcher of a program: of another type, or
/// no readable file of at most 1 MiB. Never waits for a file, starts nothing, asks no network file system.
std::optional<LauncherTarget> launcherTarget(const std::string& path, const std::string& home);

} // namespace orbel::platform
