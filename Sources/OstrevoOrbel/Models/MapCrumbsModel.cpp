#include "Models/MapCrumbsModel.h"

#include "Models/MapWords.h"
#include "Models/Wording.h"

#include <algorithm>

namespace orbel {

void MapCrumbsModel::setFolder(const FileTree& tree, NodeIndex folder, const QString& rootName) {
    std::vector<MapCrumb> crumbs;
    if (tree.count() > 0) {
        for (std::optional<NodeIndex> node = folder; node; node = tree.parent(*node))
            crumbs.push_back({.node = *node,
                              .name = *node == 0 ? rootName : textOf(tree.nameBytes(*node)),
                              .size = sizeText(tree, *node)});
        std::ranges::reverse(crumbs);
    }
    setRows(std::move(crumbs));
}

} // namespace orbel
