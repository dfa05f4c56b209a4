#pragma once

#include "Scan/FileTree.h"

namespace orbel {

/// Per node, whether it is a folder that holds nothing but empty folders and ".DS_Store" files, which only
/// say how a folder is shown. A folder that is unreadable, not downloaded or on another volume is never
/// empty, and neither is one that holds a link or anything that could not be read. A detached node does not
/// count for the folders above it.
std::vector<bool> emptyFolderMask(const FileTree& tree);

} // namespace orbel
