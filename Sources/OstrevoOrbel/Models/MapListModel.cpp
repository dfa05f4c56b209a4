#include "Models/MapListModel.h"

#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"

#include <algorithm>

namespace orbel {

MapListModel::MapListModel(QObject* parent)
    : QAbstractListModel(parent), tree_(std::make_shared<FileTree>()) {}

void MapListModel::setTicking(std::function<Qt::CheckState(NodeIndex)> tickState,
                              std::function<QString(NodeIndex)> refusal,
                              std::function<QString(NodeIndex)> note) {
    tickState_ = std::move(tickState);
    refusal_ = std::move(refusal);
    note_ = std::move(note);
}

void MapListModel::tellTicks() {
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {TickRole, RefusalRole, NoteRole});
}

void MapListModel::setFolder(std::shared_ptr<const FileTree> tree, NodeIndex folder) {
    beginResetModel();
    tree_ = std::move(tree);
    folder_ = folder;
    endResetModel();
}

std::span<const NodeIndex> MapListModel::children() const {
    return tree_->count() == 0 ? std::span<const NodeIndex>() : tree_->children(folder_);
}

int MapListModel::rowOf(NodeIndex node) const {
    while (node < tree_->count()) {
        const auto parent = tree_->parent(node);
        if (!parent)
            return -1;
        if (*parent == folder_) {
            const auto rows = children();
            // Sorted by size, so only those of the same size have to be looked through.
            const auto same = std::ranges::equal_range(rows, tree_->allocated(node), std::ranges::greater{},
                                                       [this](NodeIndex i) { return tree_->allocated(i); });
            const auto found = std::ranges::find(same, node);
            return found == same.end() ? -1 : static_cast<int>(found - rows.begin());
        }
        node = *parent;
    }
    return -1;
}

NodeIndex MapListModel::nodeAt(int row) const {
    return children()[static_cast<std::size_t>(row)];
}

int MapListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(children().size());
}

QVariant MapListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const NodeIndex node = nodeAt(index.row());
    const auto bytes = tree_->allocated(node);
    const auto largest = tree_->allocated(children().front());
    switch (role) {
    case NodeRole:
        return node;
    case Qt::DisplayRole:
    case NameRole:
        return textOf(tree_->nameBytes(node)) + (tree_->isFolder(node) ? QStringLiteral("/") : QString());
    case KindRole:
        return static_cast<int>(TreemapModel::representativeKind(*tree_, node));
    case KindNameRole:
        return kindText(*tree_, node);
    case SizeRole:
        return ByteFigure(bytes).text();
    case FractionRole:
        return largest == 0 ? 0.0 : static_cast<double>(bytes) / static_cast<double>(largest);
    case ShareRole:
        return shareText(bytes, tree_->allocated(folder_));
    case TickRole:
        return static_cast<int>(tickState_ ? tickState_(node) : Qt::Unchecked);
    case RefusalRole:
        return refusal_ ? refusal_(node) : QString();
    case NoteRole:
        return note_ ? note_(node) : QString();
    default:
        return {};
    }
}

QHash<int, QByteArray> MapListModel::roleNames() const {
    return {{NodeRole, "node"},         {NameRole, "name"}, {KindRole, "kind"},
            {KindNameRole, "kindName"}, {SizeRole, "size"}, {FractionRole, "fraction"},
            {ShareRole, "share"},       {TickRole, "tick"}, {RefusalRole, "refusal"},
            {NoteRole, "note"}};
}

} // namespace orbel
