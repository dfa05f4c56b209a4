#pragma once

#include "Scan/FileTree.h"

#include <array>
#include <cstdint>

namespace orbel {

/// Allocated bytes by kind, indexed by the kind's raw value.
using KindTotals = std::array<std::uint64_t, allFileKinds.size()>;

/// What lies below `focus` (or is it), by kind. A package counts as one item of its own kind, as on the map.
/// Together they make up what `focus` has allocated. Visits every node below it.
KindTotals kindTotals(const FileTree& tree, NodeIndex focus);

} // namespace orbel
