#pragma once

#include "Scan/ScanResult.h"

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>

namespace orbel {

/// What `--scan-json` prints of a finished scan. `root` is shown as it was given; at most `top` of its
/// children are listed, the largest first.
nlohmann::json scanReport(const std::string& root, const ScanResult& result, std::size_t top);

/// The children of the root that share a hard-linked file with another child of the root: what one of them
/// occupies depends on the other.
std::set<NodeIndex> topLevelNodesSharingLinks(const FileTree& tree);

} // namespace orbel
