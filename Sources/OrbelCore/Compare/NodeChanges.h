#pragma once

#include "Compare/ScanComparison.h"

#include <array>
#include <cstdint>
#include <vector>

namespace orbel {

/// What became of one node that is there now. The first values are those of ChangeKind; no node that is there
/// has gone.
enum class NodeChange : std::uint8_t { grew, shrank, came, went, moved, same, incomparable };

constexpr std::size_t nodeChangeCount = 7;

/// Of each node of the later tree. What lies in something that moved has grown or shrunk by itself, else it
/// has moved too; what lies in something new is new.
std::vector<NodeChange> nodeChanges(const ScanComparison& comparison, const FileTree& before,
                                    const FileTree& after);

/// What the files below a node take that have each of these changes, the node itself when it is a file.
std::array<std::uint64_t, nodeChangeCount> changeTotals(const std::vector<NodeChange>& changes,
                                                        const FileTree& after, NodeIndex node);

} // namespace orbel
