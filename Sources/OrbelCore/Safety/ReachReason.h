#pragma once

#include <optional>
#include <string>

namespace orbel {

/// Why what lies at `path` cannot be moved because this path does not reach it, in words for the user. Absent
/// when it does, and when nothing lies there. Asks the disk, unless the caller has seen that something
/// is there.
std::optional<std::string> reachReason(const std::string& path, bool isThere = false);

} // namespace orbel
