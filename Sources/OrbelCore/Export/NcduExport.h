#pragma once

#include "Scan/FileTree.h"
#include "Util/Iso8601.h"

#include <functional>
#include <string_view>

namespace orbel {

/// A tree in the JSON export of ncdu (version 1.2 of its form), which other programs of the kind read too.
/// Names are their bytes as they are, with only what JSON forbids escaped: those programs take them so,
/// although it is no valid JSON where a name is no UTF-8. Folders have no bytes of their own, as everywhere
/// here; every hard link has the bytes of its file, which is counted once by its inode.
///
/// `put` is called with one piece after another and must not be empty. The tree has a root.
void exportAsNcdu(const FileTree& tree, Date measuredAt, const std::function<void(std::string_view)>& put);

} // namespace orbel
