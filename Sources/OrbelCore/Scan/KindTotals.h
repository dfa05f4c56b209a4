#pragma once

#include "Scan/FileTree.h"

#include <array>
#include <cstdint>
#include <vector>

namespace orbel {

/// Allocated bytes by kind, indexed by the kind's raw value; together what the root is allocated.
using KindTotals = std::array<std::uint64_t, allFileKinds.size()>;

/// What the attached files of a finished tree occupy, by kind. What lies in a package counts as the kind of
/// the outermost one, because a person sees that as one item; folders occupy nothing themselves.
KindTotals kindTotals(const FileTree& tree);

/// The same of what lies below `folder`; `folder` is in no package. Visits only what lies there.
KindTotals kindTotals(const FileTree& tree, NodeIndex folder);

/// Of every node: the kind that its bytes count as, as a raw value. Detached nodes have one as well.
std::vector<std::uint8_t> countedKinds(const FileTree& tree);

} // namespace orbel
