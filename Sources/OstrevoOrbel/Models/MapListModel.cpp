#include "Models/MapListModel.h"

#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"

#include <algorithm>

namespace orbel {

MapListModel::MapListModel(QObject* parent) : RoleList(parent), tree_(std::make_shared<FileTree>()) {
    const auto of = [this](auto read) {
        return [this, read](int row) -> QVariant { return read(nodeAt(row)); };
    };
    setRoles({{"node", of([](NodeIndex node) { return node; })},
              {"name", of([this](NodeIndex node) { return nameText(*tree_, node); })},
              {"kind", of([this](NodeIndex node) {
                   return static_cast<int>(TreemapModel::contentKind(*tree_, node));
               })},
              {"kindName", of([this](NodeIndex node) { return kindText(*tree_, node); })},
              {"size", of([this](NodeIndex node) { return ByteFigure(tree_->allocated(node)).text(); })},
              {"fraction", of([this](NodeIndex node) {
                   return fractionOf(tree_->allocated(node), tree_->allocated(nodeAt(0)));
               })},
              {"share", of([this](NodeIndex node) {
                   return shareText(tree_->allocated(node), tree_->allocated(folder_));
               })},
              {"tick", of([this](NodeIndex node) { return tickState_ ? tickState_(node) : Qt::Unchecked; })},
              {"refusal", of([this](NodeIndex node) { return refusal_ ? refusal_(node) : QString(); })},
              {"note", of([this](NodeIndex node) { return note_ ? note_(node) : QString(); })}});
}

void MapListModel::setTicking(std::function<Qt::CheckState(NodeIndex)> tickState,
                              std::function<QString(NodeIndex)> refusal,
                              std::function<QString(NodeIndex)> note) {
    tickState_ = std::move(tickState);
    refusal_ = std::move(refusal);
    note_ = std::move(note);
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

} // namespace orbel
