#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// Whether this process may read the user's protected data at all, which macOS grants program by
/// program. Not instantiable.
struct FullDiskAccess {
    FullDiskAccess() = delete;

    /// Opens the settings page where it is granted.
    static constexpr std::string_view settingsURL =
        "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";

    /// Tries to read what only a process that has it can read. Absent when there is nothing to try, as on a
    /// system without such a permission.
    static std::optional<bool> isGranted(const std::string& home);
};

} // namespace orbel
