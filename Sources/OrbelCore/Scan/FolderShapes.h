#pragma once

#include "Safety/FolderShape.h"
#include "Scan/FileTree.h"

#include <functional>
#include <string_view>
#include <vector>

namespace orbel {

/// A folder of a tree that is one thing as a whole.
struct ShapedFolder {
    NodeIndex node = 0;
    const FolderShape* shape = nullptr; ///< lives as long as the program
};

/// All folders of such a shape, the root included; a folder may have several. Needs the child lists.
std::vector<ShapedFolder> shapedFolders(const FileTree& tree);

/// Whether a version-control program calls what it keeps in a work folder so: ".git" and the like.
bool isVersionControlName(std::string_view name);

/// Whether the folder is what Git calls a repository: a ".git" or a bare one.
bool isGitRepository(const FileTree& tree, NodeIndex folder);

/// The nodes other than the root whose name passes, in ascending order. `passes` is called by
/// several threads.
std::vector<NodeIndex> nodesNamed(const FileTree& tree, const std::function<bool(std::string_view)>& passes);

} // namespace orbel
