#pragma once

#include "Util/PathResolver.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// What is never touched on any platform: the fixed lists and the tests by name. Not instantiable.
struct NeverTouch {
    NeverTouch() = delete;

    static constexpr std::array<std::string_view, 9> defaultSystemRoots{
        "/System", "/Library", "/private", "/usr", "/opt", "/cores", "/bin", "/sbin", "/Volumes"};

    static constexpr std::array<std::string_view, 5> protectedComponentSuffixes{
        ".photoslibrary", ".backupbundle", "Backups.backupdb", ".keychain-db", ".keychain"};

    /// Relative to the home folder.
    static constexpr std::array<std::string_view, 3> appleOwnedParents{
        "Library/Containers", "Library/Group Containers", "Library/Application Support"};

    /// The 23 folders of a home that stay untouched, in their order; the application's own data, which holds
    /// the journal, is among them. Each is the real path of what exists; what does not, or must not be asked
    /// about, is joined to the home's real path.
    static std::vector<std::string> roots(const std::string& home, PathResolver resolver = PathResolver());

    /// Whether the name is that of a photo library, a backup or a keychain.
    static bool isProtectedName(std::string_view name);

    /// Whether a component of the path has such a name.
    static bool hasProtectedComponent(std::string_view path);

    /// Whether the path is at or below a folder that the system's own applications keep in one of the
    /// `appleOwnedParents`, which their bundle identifiers tell. `homePath`: without a trailing slash.
    static bool isAppleOwned(std::string_view path, std::string_view homePath);
};

} // namespace orbel
