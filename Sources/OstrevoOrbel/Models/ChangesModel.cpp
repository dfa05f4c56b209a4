#include "Models/ChangesModel.h"

#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/ChangeTable.h"
#include "Models/ItemKey.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

ChangesModel::ChangesModel(std::string home) : home_(std::move(home)) {
    const auto of = [this](auto read) {
        return [this, read](int row) -> QVariant { return read(changeAt(row)); };
    };
    // Of the tree that still has it.
    const auto ofNode = [this](auto read) {
        return [this, read](int row) -> QVariant {
            return read(scans_->treeOf(changeAt(row)), ComparedScans::nodeOf(changeAt(row)));
        };
    };
    setRoles(
        {{"key", of([this](const Change& change) { return keyOf(scans_->pathOf(change)); })},
         {"name", ofNode([](const FileTree& tree, NodeIndex node) { return textOf(tree.name(node)); })},
         {"kind", ofNode([](const FileTree& tree, NodeIndex node) {
              return static_cast<int>(TreemapModel::contentKind(tree, node));
          })},
         {"kindName", ofNode([](const FileTree& tree, NodeIndex node) { return kindText(tree, node); })},
         {"folder", ofNode([this](const FileTree& tree, NodeIndex node) { return folderText(tree, node); })},
         {"detail", of([this](const Change& change) {
              auto folder = folderText(scans_->treeOf(change), ComparedScans::nodeOf(change));
              if (change.kind != ChangeKind::moved)
                  return folder;
              const auto from = scans_->before->path(change.before, PathCanonicalizer::shared());
              return tr("Moved from %1, now in %2").arg(textOf(tildePath(from, home_)), folder);
          })},
         {"path",
          of([this](const Change& change) { return textOf(tildePath(scans_->pathOf(change), home_)); })},
         {"change", of([](const Change& change) { return static_cast<int>(change.kind); })},
         {"changeName", of([](const Change& change) { return changeTitle(nodeChangeOf(change.kind)); })},
         {"before", of([this](const Change& change) {
              return change.before == FileTree::noParent ? QStringLiteral("—")
                                                         : sizeText(*scans_->before, change.before);
          })},
         {"after", of([this](const Change& change) {
              return change.after == FileTree::noParent ? QStringLiteral("—")
                                                        : sizeText(*scans_->after, change.after);
          })},
         {"difference", of([this](const Change& change) {
              return differenceText(static_cast<std::int64_t>(bytesAfter(change, *scans_->after)
                                                              - bytesBefore(change, *scans_->before)));
          })},
         {"gone", of([](const Change& change) { return ComparedScans::isGone(change); })},
         {"folderKey",
          of([this](const Change& change) { return keyOf(parentPath(scans_->pathOf(change))); })}});
}

void ChangesModel::show(std::shared_ptr<const ComparedScans> scans, ChangeOrder order) {
    if (scans == scans_ && order == order_)
        return;
    beginResetModel();
    scans_ = std::move(scans);
    std::swap(order_, order);
    endResetModel();
}

const Change& ChangesModel::changeAt(int row) const {
    return scans_->comparison.changes[order_.rows[static_cast<std::size_t>(row)]];
}

QString ChangesModel::folderText(const FileTree& tree, NodeIndex node) const {
    if (node == 0)
        return tr("All that was measured");
    return textOf(tildePath(parentPath(tree.path(node, PathCanonicalizer::shared())), home_));
}

std::optional<std::string_view> ChangesModel::nameBytes(int row) const {
    const auto& change = changeAt(row);
    return scans_->treeOf(change).nameBytes(ComparedScans::nodeOf(change));
}

int ChangesModel::rowOfKey(const QString& key) const {
    if (!scans_)
        return -1;
    const auto path = pathOfKey(key);
    const auto now = scans_->after->index(path, PathCanonicalizer::shared());
    const auto then = now ? std::nullopt : scans_->before->index(path, PathCanonicalizer::shared());
    const auto found = std::ranges::find_if(order_.rows, [&](std::uint32_t row) {
        const auto& change = scans_->comparison.changes[row];
        return now ? change.after == *now : then && ComparedScans::isGone(change) && change.before == *then;
    });
    return found == order_.rows.end() ? -1 : static_cast<int>(found - order_.rows.begin());
}

int ChangesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_.rows.size());
}

} // namespace orbel
