#pragma once

#include "Scan/FileTree.h"

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace orbel {

/// Finds files and folders of a tree by a part of their name. Not instantiable.
struct NameSearch {
    NameSearch() = delete;

    using IsCancelled = std::function<bool()>;

    /// The `most` largest attached nodes whose names contain `text` regardless of case, the largest first,
    /// equal ones in the order of the tree; the root has no name. None for an empty text. Asks nothing of the
    /// disk: a million names take some tens of milliseconds. Cancelled, it returns none. Any thread.
    static std::vector<NodeIndex> run(const FileTree& tree, std::string_view text, std::size_t most,
                                      const IsCancelled& isCancelled = nullptr);
};

} // namespace orbel
