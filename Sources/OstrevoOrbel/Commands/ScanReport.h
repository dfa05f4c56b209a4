#pragma once

#include "Commands/ListLimits.h"
#include "Commands/RootScan.h"

#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>

namespace orbel {

/// What `--scan-json` prints of a finished scan. `root` is shown as it was given; its children are listed as
/// far as the limits go, the largest first, and where these have a depth to say so (`isNested`), folders with
/// their children and how many entries they hold. Of a kept scan it also says where and when it was made.
nlohmann::json scanReport(const std::string& root, const RootScan& scan, const ListLimits& limits,
                          bool isNested = false);

/// The children of the root that share a hard-linked file with another child of the root: what one of them
/// occupies depends on the other.
std::set<NodeIndex> topLevelNodesSharingLinks(const FileTree& tree);

} // namespace orbel
