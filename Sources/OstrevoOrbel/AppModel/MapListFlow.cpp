#include "AppModel/MapListFlow.h"

#include "Safety/PathCanonicalizer.h"

#include <algorithm>

namespace orbel {

namespace {

/// Up to this many rows are sorted at once; more would hold up the main thread.
constexpr std::size_t fewRows = 5'000;

const QString widthKey = QStringLiteral("map/listWidth");

} // namespace

MapListFlow::MapListFlow(const AppEnvironment& environment)
    : environment_(environment),
      tree_(std::make_shared<FileTree>()),
      width_(std::max(0, environment.settings->value(widthKey).toInt())) {}

void MapListFlow::sortBy(Column column) {
    const auto wanted = static_cast<MapListOrder::Column>(column);
    // Names from A on; of all else, the most first.
    order_.isDescending = wanted == order_.column ? !order_.isDescending : column != Name;
    order_.column = wanted;
    arrange(false);
    Q_EMIT orderChanged();
}

void MapListFlow::setOpen(int row, bool isOpen) {
    if (row < 0 || row >= rows_.rowCount() || !rows_.folds(row))
        return;
    const NodeIndex node = rows_.nodeAt(row);
    if (!isOpen) {
        Q_EMIT closing(node);
        open_.erase(node);
        openPaths_.erase(tree_->walkedPath(node));
        rows_.close(rows_.rowOf(node));
        Q_EMIT turned(rows_.rowOf(node));
        return;
    }
    if (!open_.insert(node).second)
        return;
    openPaths_.insert(tree_->walkedPath(node));
    const auto level = rows_.value(row, "level").toUInt() + 1;
    const auto below = [tree = tree_, node, level, open = open_, order = order_] {
        return mapRows(*tree, node, level, open, order);
    };
    const auto take = [this, node](const std::vector<MapRow>& rows) {
        // By now it may have been closed, or a folder around it.
        const int place = rows_.rowOf(node);
        if (place < 0 || !open_.contains(node))
            return;
        rows_.open(place, rows);
        Q_EMIT turned(place);
    };
    if (isRunning())
        arrange(true);
    else if (takesLong(node))
        sorting_.add(below, take);
    else
        take(below());
}

void MapListFlow::show(std::shared_ptr<const FileTree> tree, NodeIndex folder,
                       const PathCanonicalizer& canonicalizer) {
    const bool isSameTree = tree == tree_;
    tree_ = std::move(tree);
    folder_ = folder;
    if (!isSameTree)
        followTree(canonicalizer);
    auto path = tree_->count() == 0 ? std::string() : tree_->walkedPath(folder_);
    const bool isSamePlace = path == folderPath_;
    folderPath_ = std::move(path);
    // What is shown is of another tree or folder, so it cannot stay until the order is there.
    if (takesLong(folder_))
        setRows(mapRows(*tree_, folder_, 0, open_, {}), isSamePlace);
    arrange(isSamePlace);
}

void MapListFlow::followTree(const PathCanonicalizer& canonicalizer) {
    open_.clear();
    // An empty tree is what there is until one has been measured.
    if (tree_->count() == 0)
        return;
    std::erase_if(openPaths_, [&](const std::string& path) {
        const auto node = tree_->index(path, canonicalizer);
        if (node && tree_->isFolder(*node))
            open_.insert(*node);
        return !node || !tree_->isFolder(*node);
    });
}

void MapListFlow::setRows(std::vector<MapRow> rows, bool keepsPlace) {
    rows_.setRows(tree_, folder_, std::move(rows));
    Q_EMIT orderChanged();
    Q_EMIT arranged(keepsPlace);
}

void MapListFlow::arrange(bool keepsPlace) {
    sorting_.drop();
    const auto sort = [tree = tree_, folder = folder_, open = open_, order = order_] {
        return tree->count() == 0 ? std::vector<MapRow>() : mapRows(*tree, folder, 0, open, order);
    };
    if (takesLong(folder_))
        sorting_.run(sort,
                     [this, keepsPlace](std::vector<MapRow> rows) { setRows(std::move(rows), keepsPlace); });
    else
        setRows(sort(), keepsPlace);
}

bool MapListFlow::takesLong(NodeIndex folder) const {
    return tree_->count() > 0 && !order_.isOfTheTree() && mostMapRows(*tree_, folder, open_) > fewRows;
}

void MapListFlow::setWidth(int width) {
    if (width == width_)
        return;
    width_ = width;
    if (width > 0)
        environment_.settings->setValue(widthKey, width);
    else
        environment_.settings->remove(widthKey);
    Q_EMIT widthChanged();
}

} // namespace orbel
