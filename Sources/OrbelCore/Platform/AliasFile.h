#pragma once

#include <optional>
#include <string>

namespace orbel::platform {

/// What an alias file of the file manager says of where it leads.
struct AliasTarget {
    bool isFound = false;                  ///< it leads to something that is there
    std::optional<std::string> lastPath{}; ///< where that lay when the alias was last brought up to date
};

/// Follows the alias file at `path`; mounts nothing and shows no dialog. Absent when it is no alias file,
/// cannot be read, or the system knows no such files. Any thread.
std::optional<AliasTarget> aliasTarget(const std::string& path);

} // namespace orbel::platform
