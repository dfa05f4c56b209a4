#pragma once

#include "Scan/FileTree.h"

#include <optional>
#include <string>

namespace orbel {

/// What the Git repositories at or in a folder hold that is nowhere else, such as "Holds commits that are on
/// no remote"; absent when they hold nothing of the kind, or there are none. Asks git about each, some at a
/// time, so it blocks; of very many repositories the first ones are asked, and the words say so.
std::optional<std::string> repositoryNote(const FileTree& tree, NodeIndex folder);

/// Whether the folder holds a repository of its own, rather than folders that do.
bool isWorkFolder(const FileTree& tree, NodeIndex folder);

} // namespace orbel
