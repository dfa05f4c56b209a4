#pragma once

#include "Scan/FileTree.h"

#include <optional>
#include <string>

namespace orbel {

/// Why what a scan left out stays, and what holds any of it: how much would move is not known. Absent where
/// there is none of it. `home` is what "~" stands for.
std::optional<std::string> exclusionReason(const FileTree& tree, NodeIndex node, const std::string& home);

/// The same for what is in no tree, at this real path in its visible form.
std::optional<std::string> exclusionReason(const Exclusions& exclusions, const std::string& path,
                                           const std::string& home);

} // namespace orbel
