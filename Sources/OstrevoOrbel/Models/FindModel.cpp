#include "Models/FindModel.h"

#include "Find/NameSearch.h"
#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

namespace orbel {

FindModel::FindModel(QObject* parent) : RoleList(parent) {
    const auto of = [this](auto read) {
        return [this, read](int row) -> QVariant { return read(found_[static_cast<std::size_t>(row)]); };
    };
    setRoles({{"node", of([](NodeIndex node) { return node; })},
              {"name", of([this](NodeIndex node) { return nameText(*tree_, node); })},
              {"folder", of([this](NodeIndex node) {
                   const auto path = tree_->path(node, app_->policy().canonicalizer());
                   return textOf(tildePath(parentPath(path), app_->home()));
               })},
              {"kind", of([this](NodeIndex node) {
                   return static_cast<int>(TreemapModel::representativeKind(*tree_, node));
               })},
              {"kindName", of([this](NodeIndex node) { return kindText(*tree_, node); })},
              {"size", of([this](NodeIndex node) { return ByteFigure(tree_->allocated(node)).text(); })}});
}

FindModel::~FindModel() {
    stop();
}

void FindModel::setApp(AppModel* app) {
    if (app == app_)
        return;
    if (app_ != nullptr)
        disconnect(app_, nullptr, this, nullptr);
    app_ = app;
    if (app_ != nullptr)
        connect(app_, &AppModel::treeChanged, this, &FindModel::search);
    Q_EMIT appChanged();
    search();
}

void FindModel::setText(const QString& text) {
    if (text == text_)
        return;
    text_ = text;
    Q_EMIT textChanged();
    search();
}

void FindModel::stop() {
    if (token_)
        token_->cancel();
    token_.reset();
}

void FindModel::search() {
    stop();
    const auto wanted = text_.trimmed().toStdString();
    if (app_ == nullptr || wanted.empty() || app_->tree()->count() == 0) {
        show(nullptr, {});
        return;
    }
    // Rows of a tree that is gone must not be acted upon.
    if (tree_ != app_->tree())
        show(nullptr, {});
    token_ = std::make_shared<ScanCancellation>();
    inbox_.runAside(
        "orbel.find",
        [token = token_, tree = app_->tree(), wanted] {
            return NameSearch::run(*tree, wanted, most, [&] { return token->isCancelled(); });
        },
        [this, token = token_, tree = app_->tree()](std::vector<NodeIndex> found) {
            if (token != token_)
                return;
            token_.reset();
            show(tree, std::move(found));
        });
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
