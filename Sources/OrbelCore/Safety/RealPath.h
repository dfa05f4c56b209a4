#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// Where a path really leads, and containment by whole path components. Not instantiable.
struct RealPath {
    RealPath() = delete;

    /// The path with every symbolic link, "." and ".." resolved; absent when that fails (something is
    /// missing, a loop, no permission) or when `path` holds a zero byte, at which the system would silently
    /// cut it off.
    static std::optional<std::string> resolve(const std::string& path);

    /// Whether `path` is `folder` or lies inside it. Exact comparison of text: both must be
    /// real paths already.
    static bool isInside(std::string_view path, std::string_view folder);
};

} // namespace orbel
