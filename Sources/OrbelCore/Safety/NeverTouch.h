#pragma once

#include <array>
#include <string_view>

namespace orbel {

/// What is never touched, wherever it lies. Not instantiable.
struct NeverTouch {
    NeverTouch() = delete;

    static constexpr std::array<std::string_view, 5> protectedComponentSuffixes{
        ".photoslibrary", ".backupbundle", "Backups.backupdb", ".keychain-db", ".keychain"};

    /// Whether a component of the path names a photo library, a backup or a keychain.
    static bool hasProtectedComponent(std::string_view path);
};

} // namespace orbel
