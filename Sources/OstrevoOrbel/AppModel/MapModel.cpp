#include "AppModel/MapModel.h"

#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/ChangeTable.h"
#include "Models/ItemKey.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <QScopeGuard>
#include <utility>

namespace orbel {

namespace {

/// Up to this many nodes are summed up at once; more would hold up the main thread.
constexpr std::uint32_t fewNodes = 20'000;

/// How many folders lie in a node, however deep.
std::uint32_t foldersBelow(const FileTree& tree, NodeIndex node) {
    std::uint32_t folders = 0;
    std::vector<NodeIndex> left{node};
    while (!left.empty()) {
        const NodeIndex folder = left.back();
        left.pop_back();
        for (const NodeIndex child : tree.children(folder)) {
            if (!tree.isFolder(child))
                continue;
            ++folders;
            left.push_back(child);
        }
    }
    return folders;
}

} // namespace

MapModel::MapModel(const AppEnvironment& environment, std::shared_ptr<const SafetyPolicy> policy,
                   const ScanFlow& scan, MoveFlow& moves)
    : environment_(environment),
      canonicalizer_(policy->canonicalizer()),
      tree_(scan.tree()),
      list_(environment),
      ticking_(std::move(policy), *list_.rows()) {
    ticking_.setTree(tree_, {});
    connect(this, &MapModel::selectionChanged, this, &MapModel::selectedRowChanged);
    connect(&list_, &MapListFlow::closing, this, &MapModel::leaveFolder);
    connect(&list_, &MapListFlow::turned, this, [this](int row) {
        ticking_.checkRows(row);
        Q_EMIT selectedRowChanged();
    });
    connect(&list_, &MapListFlow::arranged, this, [this] {
        ticking_.checkRows(0);
        Q_EMIT selectedRowChanged();
    });
    connect(&ticking_, &MapTicking::refused, this,
            [this](quint32 node, const QString& refusal) { Q_EMIT tickRefused(nameOf(node), refusal); });
    connect(&scan, &ScanFlow::treeChanged, this, [this, &scan] {
        setTree(scan.tree(), scan.coverage(), scan.isForeign() ? scan.keptStatement() : QString());
    });
    moves.watch(*ticking_.ticks());
}

void MapModel::setTree(std::shared_ptr<const FileTree> tree, std::optional<Coverage> coverage,
                       QString elsewhere) {
    const bool isEdited = tree->count() > 0 && tree_->count() > 0 && tree->rootPath == tree_->rootPath;
    const auto former = std::exchange(tree_, std::move(tree));
    coverage_ = coverage;
    ticking_.setTree(tree_, std::move(elsewhere));
    if (isEdited) {
        // An edited tree may number its nodes anew; their paths stay.
        const auto again = [&](NodeIndex node) {
            return tree_->index(former->walkedPath(node), canonicalizer_);
        };
        const auto follow = [&](std::vector<NodeIndex>& nodes) {
            std::vector<NodeIndex> left;
            for (const NodeIndex node : nodes) {
                if (const auto now = again(node))
                    left.push_back(*now);
            }
            nodes = std::move(left);
        };
        follow(back_);
        follow(forward_);
        auto place = again(focus_);
        for (NodeIndex above = focus_;
             above != 0 && !(place && TreemapModel::isPlainFolder(*tree_, *place));) {
            above = former->parent(above).value_or(0);
            place = again(above);
        }
        focus_ = place.value_or(0);
        if (selected_)
            selected_ = again(*selected_);
    } else {
        back_.clear();
        forward_.clear();
        selected_.reset();
        const auto again = focusPath_.empty() ? std::nullopt : tree_->index(focusPath_, canonicalizer_);
        focus_ = again && TreemapModel::isPlainFolder(*tree_, *again) ? *again : 0;
    }
    showFocus();
    Q_EMIT selectionChanged();
    followSelection();
}

void MapModel::show(quint32 node) {
    if (node >= tree_->count() || !tree_->isAttached(node))
        return;
    // The map shows a package as one item, so that stands for what is in it.
    for (auto above = tree_->parent(node); above; above = tree_->parent(*above)) {
        if (tree_->flags(*above).contains(NodeFlags::package))
            node = *above;
    }
    if (TreemapModel::isPlainFolder(*tree_, node)) {
        setFocus(node);
    } else {
        setFocus(tree_->parent(node).value_or(0));
        select(node);
    }
}

void MapModel::goBack() {
    if (back_.empty())
        return;
    const NodeIndex to = back_.back();
    back_.pop_back();
    forward_.push_back(focus_);
    focus_ = to;
    showFocus();
}

void MapModel::goForward() {
    if (forward_.empty())
        return;
    const NodeIndex to = forward_.back();
    forward_.pop_back();
    back_.push_back(focus_);
    focus_ = to;
    showFocus();
}

void MapModel::goUp() {
    if (!canGoUp())
        return;
    const NodeIndex left = focus_;
    setFocus(tree_->parent(left).value_or(0));
    select(left);
}

void MapModel::goToRoot() {
    if (canGoUp())
        setFocus(0);
}

void MapModel::setFocus(NodeIndex node) {
    if (node == focus_)
        return;
    back_.push_back(focus_);
    forward_.clear();
    focus_ = node;
    showFocus();
}

void MapModel::showFocus() {
    if (tree_->count() > 0)
        focusPath_ = tree_->walkedPath(focus_);
    crumbs_.setFolder(*tree_, focus_, rootName());
    list_.show(tree_, focus_, canonicalizer_);
    // A selection outside what is shown would be acted upon unseen.
    if (selected_ && holdingRow() < 0)
        clearSelection();
    updateLegend();
    Q_EMIT focusChanged();
    Q_EMIT selectionChanged();
}

void MapModel::select(quint32 node) {
    if (node >= tree_->count() || selected_ == node)
        return;
    selected_ = node;
    Q_EMIT selectionChanged();
    followSelection();
}

void MapModel::selectRow(int row) {
    if (row >= 0 && row < list_.rows()->rowCount())
        select(list_.rows()->nodeAt(row));
}

void MapModel::clearSelection() {
    if (!selected_)
        return;
    selected_.reset();
    Q_EMIT selectionChanged();
    followSelection();
}

void MapModel::toggleKind(int kind) {
    setFilter({.kinds = filter_.kinds ^ 1U << static_cast<unsigned>(kind), .extension = {}});
}

void MapModel::toggleChange(int change) {
    changesShown_ ^= 1U << static_cast<unsigned>(change);
    legend_.setChosen(changesShown_);
    Q_EMIT legendChanged();
}

void MapModel::clearFilter() {
    setFilter({});
    if (changesShown_ != 0) {
        changesShown_ = 0;
        legend_.setChosen(0);
        Q_EMIT legendChanged();
    }
}

void MapModel::showOnly(MapFilter filter) {
    goToRoot();
    setByChange(false);
    setFilter(std::move(filter));
}

void MapModel::jumpTo(quint32 node) {
    if (node >= tree_->count())
        return;
    // What was chosen in a folder is for that folder: another one is seen as it is.
    if (changesShown_ != 0)
        clearFilter();
    if (filter_.isSet() && (TreemapModel::isPlainFolder(*tree_, node) || !filter_.shows(*tree_, node)))
        clearFilter();
    show(node);
}

void MapModel::setFilter(MapFilter filter) {
    if (filter == filter_)
        return;
    const bool isSameExtension = filter.extension == filter_.extension;
    filter_ = std::move(filter);
    legend_.setChosen(filter_.kinds);
    if (!isSameExtension)
        updateLegend();
    Q_EMIT legendChanged();
}

void MapModel::setByChange(bool isByChange) {
    if (isByChange == isByChange_)
        return;
    // What the legend does not show would hide tiles for no reason to be seen.
    clearFilter();
    isByChange_ = isByChange;
    Q_EMIT byChangeChanged();
    followComparison();
}

void MapModel::setCompared(std::shared_ptr<const ComparedScans> compared) {
    compared_ = std::move(compared);
    followComparison();
}

void MapModel::followComparison() {
    updateLegend();
    Q_EMIT legendChanged();
    Q_EMIT selectionChanged();
}

const std::vector<NodeChange>* MapModel::nodeChanges() const {
    return isByChange_ && compared_ && compared_->after == tree_ ? &compared_->nodes : nullptr;
}

QString MapModel::changeText(NodeIndex node) const {
    const auto* const changes = nodeChanges();
    if (changes == nullptr)
        return {};
    const auto change = (*changes)[node];
    const auto counterpart = compared_->comparison.counterparts[node];
    if (change == NodeChange::grew || change == NodeChange::shrank) {
        const auto bytes =
            static_cast<std::int64_t>(tree_->allocated(node) - compared_->before->allocated(counterpart));
        return tr("%1 by %2")
            .arg(changeTitle(change), ByteFigure(static_cast<quint64>(std::abs(bytes))).text());
    }
    if (change == NodeChange::moved)
        return tr("Moved from %1")
            .arg(textOf(tildePath(compared_->before->path(counterpart, canonicalizer_), environment_.home)));
    return changeTitle(change);
}

void MapModel::updateLegend() {
    struct Figures {
        KindTotals totals{};
        MapLegendModel::ChangeTotals changes{};
        std::optional<std::uint64_t> ofExtension{};
    };
    legendJob_.drop();
    extensionBytes_.reset();
    const auto count = [tree = tree_, focus = focus_, extension = filter_.extension,
                        compared = nodeChanges() == nullptr ? nullptr : compared_] {
        Figures figures{.totals = kindTotals(*tree, focus)};
        if (compared)
            figures.changes = changeTotals(compared->nodes, *tree, focus);
        if (!extension.empty())
            figures.ofExtension = extensionBytes(*tree, focus, extension);
        return figures;
    };
    const auto take = [this](const Figures& figures) {
        legend_.setTotals(figures.totals, figures.changes);
        extensionBytes_ = figures.ofExtension;
        Q_EMIT legendChanged();
    };
    if (tree_->count() == 0)
        take({});
    else if (tree_->descendantCount(focus_) <= fewNodes)
        take(count());
    else
        legendJob_.run(count, take);
}

void MapModel::followSelection() {
    ticking_.select(selected_);
    contentsJob_.drop();
    contents_.clear();
    const auto finish = qScopeGuard([this] { Q_EMIT contentsChanged(); });
    if (!selected_ || !tree_->isFolder(*selected_) || tree_->isExcluded(*selected_))
        return;
    const auto count = tree_->descendantCount(*selected_);
    contents_ = countOf(count, tr("item"), tr("items"));
    const auto countBelow = [tree = tree_, node = *selected_] { return foldersBelow(*tree, node); };
    const auto take = [this](std::uint32_t folders) {
        if (folders == 0)
            return;
        contents_ = tr("%1 in %2").arg(contents_, countOf(folders, tr("folder"), tr("folders")));
        Q_EMIT contentsChanged();
    };
    if (count <= fewNodes)
        take(countBelow());
    else
        contentsJob_.run(countBelow, take);
}

/// A row that is selected does not leave the list unseen.
void MapModel::leaveFolder(NodeIndex folder) {
    if (selected_ && selectedRow() >= 0 && liesIn(*tree_, *selected_, folder))
        select(folder);
}

std::optional<NodeIndex> MapModel::zoomTarget(NodeIndex node) const {
    while (!TreemapModel::isPlainFolder(*tree_, node)) {
        const auto parent = tree_->parent(node);
        if (!parent)
            return std::nullopt;
        node = *parent;
    }
    return node == focus_ ? std::nullopt : std::optional(node);
}

MapItemFacts MapModel::facts(quint32 node) const {
    if (node >= tree_->count())
        return {};
    const auto path = tree_->path(node, canonicalizer_);
    const auto whole = focusBytes();
    const bool isExcluded = tree_->isExcluded(node);
    return {.valid = true,
            .node = node,
            .key = keyOf(path),
            .name = nameOf(node),
            .kind = static_cast<int>(TreemapModel::contentKind(*tree_, node)),
            .kindName = kindText(*tree_, node),
            .size = isExcluded ? excludedText() : sizeText(*tree_, node),
            .path = textOf(tildePath(path, environment_.home)),
            .folder = textOf(tildePath(parentPath(path), environment_.home)),
            .changed = changedText(*tree_, node),
            .share = isExcluded ? QStringLiteral("—")
                                : tr("%1 of %2").arg(shareText(tree_->allocated(node), whole), focusName()),
            .change = changeText(node),
            .zoomable = zoomTarget(node).has_value(),
            .isFolder = tree_->isFolder(node),
            .excluded = isExcluded};
}

QString MapModel::focusName() const {
    if (tree_->count() == 0)
        return {};
    return nameOf(focus_);
}

std::uint64_t MapModel::focusBytes() const {
    if (tree_->count() == 0)
        return 0;
    return tree_->allocated(focus_) + (focus_ == 0 && coverage_ ? coverage_->notMeasured() : 0);
}

QString MapModel::nameOf(NodeIndex node) const {
    return node == 0 ? rootName() : textOf(tree_->nameBytes(node));
}

QString MapModel::rootName() const {
    if (coverage_)
        return tr("This disk");
    return textOf(tildePath(tree_->rootPath, environment_.home));
}

QString MapModel::listSummary() const {
    if (isFocusExcluded())
        return excludedText();
    auto summary = countOf(tree_->count() == 0 ? 0 : tree_->children(focus_).size(), tr("item"), tr("items"));
    if (focus_ == 0 && coverage_ && coverage_->notMeasured() > 0)
        summary += tr(", and %1 not measured").arg(ByteFigure(coverage_->notMeasured()).text());
    return summary;
}

QString MapModel::share() const {
    if (tree_->count() == 0)
        return {};
    if (isFocusExcluded())
        return excludedText();
    QString words = ByteFigure(focusBytes()).text();
    if (focus_ != 0)
        words = tr("%1 · %2 of what was measured").arg(words, shareText(focusBytes(), tree_->allocated(0)));
    else
        words = coverage_ ? tr("%1 used").arg(words) : tr("%1 measured").arg(words);
    if (!filter_.isSet())
        return changesShown_ == 0 ? words : tr("%1 · filtered to %2").arg(words, filterText());
    words = tr("%1 · filtered to %2").arg(words, filterText());
    auto shown = extensionBytes_;
    if (filter_.extension.empty()) {
        shown = 0;
        for (const ContentKind kind : allContentKinds)
            *shown += filter_.has(kind) ? legend_.totals().at(static_cast<std::size_t>(kind)) : 0;
    }
    return shown ? tr("%1, %2").arg(words, ByteFigure(*shown).text()) : words;
}

QString MapModel::filterText() const {
    if (!filter_.extension.empty())
        return tr(".%1 files").arg(textOf(filter_.extension));
    if (changesShown_ != 0)
        return std::has_single_bit(changesShown_)
                   ? changeTitle(static_cast<NodeChange>(std::countr_zero(changesShown_)))
                   : tr("%1 kinds of change").arg(std::popcount(changesShown_));
    const int count = std::popcount(filter_.kinds);
    if (count == 0)
        return {};
    return count == 1 ? textOf(title(static_cast<ContentKind>(filterKind()))) : tr("%1 kinds").arg(count);
}

int MapModel::filterKind() const {
    if (!filter_.extension.empty())
        return static_cast<int>(classifyContent("x." + filter_.extension));
    return std::has_single_bit(filter_.kinds) ? std::countr_zero(filter_.kinds) : -1;
}

MapItemFacts MapModel::selection() const {
    return selected_ ? facts(*selected_) : MapItemFacts();
}

void MapModel::noteTiles(int tiles) const {
    if (environment_.diagnostics)
        environment_.diagnostics->setTiles(tiles);
}

} // namespace orbel
