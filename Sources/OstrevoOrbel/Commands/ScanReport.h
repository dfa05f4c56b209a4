#pragma once

#include "Commands/RootScan.h"

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>

namespace orbel {

/// What `--scan-json` prints of a finished scan. `root` is shown as it was given; at most `top` of its
/// children are listed, the largest first. Of a scan that was kept it also says where and when it was made.
nlohmann::json scanReport(const std::string& root, const RootScan& scan, std::size_t top);

/// Where and when a scan was made, and of what: "root", "measuredAt", "machine" and "user".
nlohmann::json originJson(const FileTree& tree, const ScanOrigin& origin);

/// The children of the root that share a hard-linked file with another child of the root: what one of them
/// occupies depends on the other.
std::set<NodeIndex> topLevelNodesSharingLinks(const FileTree& tree);

} // namespace orbel
