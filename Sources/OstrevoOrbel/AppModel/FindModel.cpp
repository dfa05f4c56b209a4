#include "AppModel/FindModel.h"

#include "Find/NameSearch.h"
#include "Map/TreemapModel.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"

namespace orbel {

FindModel::FindModel(QObject* parent) : RoleList(parent) {
    const auto of = [this](auto read) {
        return [this, read](int row) -> QVariant { return read(found_[static_cast<std::size_t>(row)]); };
    };
    setRoles({{"node", of([](NodeIndex node) { return node; })},
              {"name", of([this](NodeIndex node) { return nameText(*tree_, node); })},
              {"folder", of([this](NodeIndex node) {
                   const auto path = tree_->path(node, PathCanonicalizer::shared());
                   return textOf(tildePath(parentPath(path), scan_->home()));
               })},
              {"kind", of([this](NodeIndex node) {
                   return static_cast<int>(TreemapModel::representativeKind(*tree_, node));
               })},
              {"kindName", of([this](NodeIndex node) {
                   return tree_->isExcluded(node) ? excludedText() : kindText(*tree_, node);
               })},
              {"size", of([this](NodeIndex node) { return sizeText(*tree_, node); })}});
}

void FindModel::setScan(ScanFlow* scan) {
    if (scan == scan_)
        return;
    if (scan_ != nullptr)
        disconnect(scan_, nullptr, this, nullptr);
    scan_ = scan;
    if (scan_ != nullptr)
        connect(scan_, &ScanFlow::treeChanged, this, &FindModel::search);
    Q_EMIT scanChanged();
    search();
}

void FindModel::setText(const QString& text) {
    if (text == text_)
        return;
    text_ = text;
    Q_EMIT textChanged();
    search();
}

void FindModel::search() {
    job_.drop();
    const auto wanted = text_.trimmed().toStdString();
    if (scan_ == nullptr || wanted.empty() || scan_->tree()->count() == 0) {
        show(nullptr, {});
        return;
    }
    // Rows of a tree that is gone must not be acted upon.
    if (tree_ != scan_->tree())
        show(nullptr, {});
    job_.run(
        [tree = scan_->tree(), wanted](const LatestJob::Run& run) {
            return NameSearch::run(*tree, wanted, most, [&] { return run.isCancelled(); });
        },
        [this, tree = scan_->tree()](std::vector<NodeIndex> found) { show(tree, std::move(found)); });
    Q_EMIT searchingChanged();
}

void FindModel::show(std::shared_ptr<const FileTree> tree, std::vector<NodeIndex> found) {
    beginResetModel();
    tree_ = std::move(tree);
    found_ = std::move(found);
    endResetModel();
    Q_EMIT searchingChanged();
}

QString FindModel::summary() const {
    if (!tree_)
        return {};
    if (found_.empty())
        return tr("Nothing of this name");
    return found_.size() < most ? tr("%1 found").arg(countText(found_.size()))
                                : tr("The %1 largest").arg(countText(most));
}

int FindModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(found_.size());
}

} // namespace orbel
