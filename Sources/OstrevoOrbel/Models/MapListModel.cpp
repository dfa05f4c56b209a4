#include "Models/MapListModel.h"

#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"

namespace orbel {

MapListModel::MapListModel(QObject* parent) : RoleList(parent), tree_(std::make_shared<FileTree>()) {
    const auto of = [this](auto read) {
        return [this, read](int row) -> QVariant { return read(nodeAt(row)); };
    };
    const auto largestBeside = [this](NodeIndex node) {
        return tree_->allocated(tree_->children(tree_->parent(node).value_or(0)).front());
    };
    setRoles({{"node", of([](NodeIndex node) { return node; })},
              {"name", of([this](NodeIndex node) { return nameText(*tree_, node); })},
              {"kind", of([this](NodeIndex node) {
                   return static_cast<int>(TreemapModel::contentKind(*tree_, node));
               })},
              {"kindName", of([this](NodeIndex node) {
                   return tree_->isExcluded(node) ? excludedText() : kindText(*tree_, node);
               })},
              {"size", of([this](NodeIndex node) { return sizeText(*tree_, node); })},
              {"excluded", of([this](NodeIndex node) { return tree_->isExcluded(node); })},
              {"level", [this](int row) -> QVariant { return levelOf(row); }},
              {"folds", [this](int row) -> QVariant { return folds(row); }},
              {"open", [this](int row) -> QVariant { return isOpen(row); }},
              {"fraction", of([this, largestBeside](NodeIndex node) {
                   return fractionOf(tree_->allocated(node), largestBeside(node));
               })},
              {"share", of([this](NodeIndex node) {
                   return tree_->isExcluded(node)
                              ? QString()
                              : shareText(tree_->allocated(node), tree_->allocated(folder_));
               })},
              {"items", of([this](NodeIndex node) {
                   return tree_->isFolder(node) && !tree_->isExcluded(node)
                              ? countText(tree_->descendantCount(node))
                              : QString();
               })},
              {"changed", of([this](NodeIndex node) { return dayText(tree_->modified(node)); })},
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

void MapListModel::setRows(std::shared_ptr<const FileTree> tree, NodeIndex folder, std::vector<MapRow> rows) {
    beginResetModel();
    tree_ = std::move(tree);
    folder_ = folder;
    rows_ = std::move(rows);
    endResetModel();
}

void MapListModel::open(int row, const std::vector<MapRow>& below) {
    if (below.empty() || isOpen(row))
        return;
    beginInsertRows({}, row + 1, row + static_cast<int>(below.size()));
    rows_.insert(rows_.begin() + row + 1, below.begin(), below.end());
    endInsertRows();
    Q_EMIT dataChanged(index(row), index(row));
}

void MapListModel::close(int row) {
    const int end = endOf(row);
    if (end == row + 1)
        return;
    beginRemoveRows({}, row + 1, end - 1);
    rows_.erase(rows_.begin() + row + 1, rows_.begin() + end);
    endRemoveRows();
    Q_EMIT dataChanged(index(row), index(row));
}

bool MapListModel::folds(int row) const {
    const NodeIndex node = nodeAt(row);
    return TreemapModel::isPlainFolder(*tree_, node) && !tree_->children(node).empty();
}

int MapListModel::rowOf(NodeIndex node) const {
    const int row = rowHolding(node);
    return row >= 0 && nodeAt(row) == node ? row : -1;
}

int MapListModel::rowHolding(NodeIndex node) const {
    if (node >= tree_->count())
        return -1;
    std::vector<NodeIndex> way;
    for (NodeIndex at = node; at != folder_;) {
        way.push_back(at);
        const auto above = tree_->parent(at);
        if (!above)
            return -1;
        at = *above;
    }
    int found = -1;
    int row = 0;
    for (std::uint32_t level = 0; !way.empty(); ++level, way.pop_back()) {
        while (row < rowCount() && levelOf(row) >= level && nodeAt(row) != way.back())
            ++row;
        if (row == rowCount() || levelOf(row) < level)
            break;
        found = row++;
    }
    return found;
}

int MapListModel::rowAbove(int row) const {
    int above = row - 1;
    while (above >= 0 && levelOf(above) >= levelOf(row))
        --above;
    return above;
}

int MapListModel::endOf(int row) const {
    int end = row + 1;
    while (end < rowCount() && levelOf(end) > levelOf(row))
        ++end;
    return end;
}

int MapListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

} // namespace orbel
