#include "Models/MapCrumbsModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <algorithm>

namespace orbel {

void MapCrumbsModel::setFolder(const FileTree& tree, NodeIndex folder, const QString& rootName) {
    beginResetModel();
    crumbs_.clear();
    if (tree.count() > 0) {
        for (std::optional<NodeIndex> node = folder; node; node = tree.parent(*node))
            crumbs_.push_back({.node = *node,
                               .name = *node == 0 ? rootName : textOf(tree.nameBytes(*node)),
                               .size = ByteFigure(tree.allocated(*node)).text()});
        std::ranges::reverse(crumbs_);
    }
    endResetModel();
}

int MapCrumbsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(crumbs_.size());
}

QVariant MapCrumbsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& crumb = crumbs_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case NodeRole:
        return crumb.node;
    case NameRole:
        return crumb.name;
    case SizeRole:
        return crumb.size;
    default:
        return {};
    }
}

QHash<int, QByteArray> MapCrumbsModel::roleNames() const {
    return {{NodeRole, "node"}, {NameRole, "name"}, {SizeRole, "size"}};
}

} // namespace orbel
