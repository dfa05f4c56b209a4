#include "Map/MapFilter.h"

#include "Map/TreemapModel.h"
#include "Scan/KindTotals.h"

namespace orbel {

bool MapFilter::shows(const FileTree& tree, NodeIndex node) const {
    if (!extension.empty()) {
        const NodeIndex shown = TreemapModel::representative(tree, node);
        return !TreemapModel::isPlainFolder(tree, shown) && hasExtension(tree.nameBytes(shown), extension);
    }
    return kinds == 0 || has(TreemapModel::contentKind(tree, node));
}

} // namespace orbel
