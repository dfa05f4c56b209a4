#include "AppModel/MapModel.h"

#include "Delete/DeletionItem.h"
#include "Delete/ItemNote.h"
#include "Delete/RepositoryNote.h"
#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/ChangeTable.h"
#include "Models/ItemKey.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>
#include <QScopeGuard>
#include <utility>

namespace orbel {

namespace {

/// Up to this many nodes are summed up at once; more would hold up the main thread.
constexpr std::uint32_t fewNodes = 20'000;

/// What git says of a folder may take a while, so it is asked about a folder that is selected or ticked, and
/// of the others only about those that are a repository's own.
std::optional<DeletionItem> itemWithRepositories(const FileTree& tree, NodeIndex node,
                                                 const SafetyPolicy& policy) {
    auto item = DeletionItem::fromTree(tree, node, DeletionModule::map, policy);
    if (item && item->isSelectable())
        item->note = ItemNote::joined(item->note, repositoryNote(tree, node));
    return item;
}

/// What of these rows can be ticked, and of the others why not. What lies in a folder that can be ticked is
/// neither: it goes with the folder.
struct SortedOut {
    std::vector<TickedItem> items;
    std::vector<std::pair<NodeIndex, std::optional<DeletionItem>>> refused;
};

SortedOut sortedOut(const FileTree& tree, const std::vector<MapRow>& rows, const SafetyPolicy& policy,
                    const LatestJob::Run& run) {
    SortedOut sorted;
    constexpr auto noLevel = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t taken = noLevel; // the level of the ticked folder that the rows are in
    for (const auto& [node, level] : rows) {
        if (run.isCancelled())
            break;
        if (level > taken)
            continue;
        taken = noLevel;
        auto item = itemWithRepositories(tree, node, policy);
        if (item && item->isSelectable()) {
            taken = level;
            sorted.items.push_back(TickedItem::ofNode(std::move(*item), tree, node));
        } else {
            sorted.refused.emplace_back(node, std::move(item));
        }
    }
    return sorted;
}

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
    : environment_(environment), policy_(std::move(policy)), tree_(scan.tree()), list_(environment) {
    list_.rows()->setTicking([this](NodeIndex node) { return tickState(node); },
                             [this](NodeIndex node) { return tickRefusal(node); },
                             [this](NodeIndex node) { return noteOf(node); });
    connect(this, &MapModel::selectionChanged, this, &MapModel::selectedRowChanged);
    connect(&list_, &MapListFlow::closing, this, &MapModel::leaveFolder);
    connect(&list_, &MapListFlow::turned, this, [this](int row) {
        checkRows(row);
        Q_EMIT selectedRowChanged();
    });
    connect(&list_, &MapListFlow::arranged, this, [this] {
        checkRows(0);
        Q_EMIT selectedRowChanged();
    });
    connect(&ticks_, &Ticks::changed, this, [this] {
        list_.rows()->tellTicks();
        Q_EMIT ticksChanged();
    });
    connect(&scan, &ScanFlow::treeChanged, this, [this, &scan] {
        elsewhere_ = scan.isForeign() ? scan.keptStatement() : QString();
        setTree(scan.tree(), scan.coverage());
    });
    moves.watch(ticks_);
}

void MapModel::setTree(std::shared_ptr<const FileTree> tree, std::optional<Coverage> coverage) {
    const bool isEdited = tree->count() > 0 && tree_->count() > 0 && tree->rootPath == tree_->rootPath;
    const auto former = std::exchange(tree_, std::move(tree));
    coverage_ = coverage;
    refusals_.clear();
    notes_.clear();
    ticking_.drop();
    tickingAll_.drop();
    rowsJob_.drop();
    if (isEdited) {
        // An edited tree may number its nodes anew; their paths stay.
        const auto again = [&](NodeIndex node) {
            return tree_->index(former->walkedPath(node), canonicalizer());
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
        const auto again = focusPath_.empty() ? std::nullopt : tree_->index(focusPath_, canonicalizer());
        focus_ = again && TreemapModel::isPlainFolder(*tree_, *again) ? *again : 0;
    }
    showFocus();
    Q_EMIT selectionChanged();
    updateSafety();
    Q_EMIT ticksChanged();
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
    list_.show(tree_, focus_, canonicalizer());
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
    updateSafety();
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
    updateSafety();
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
            .arg(textOf(tildePath(compared_->before->path(counterpart, canonicalizer()), environment_.home)));
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

/// Asking the policy asks the disk, which may be asleep.
void MapModel::updateSafety() {
    selectionJob_.drop();
    isMovable_ = false;
    refusal_ = elsewhere_;
    Q_EMIT safetyChanged();
    updateContents();
    if (!selected_ || !isTickable())
        return;
    selectionJob_.run([tree = tree_, node = *selected_,
                       policy = policy_] { return itemWithRepositories(*tree, node, *policy); },
                      [this](const std::optional<DeletionItem>& item) {
                          applyAnswers({{*selected_, item}});
                          refusal_ = tickRefusal(*selected_);
                          isMovable_ = refusal_.isEmpty();
                          Q_EMIT safetyChanged();
                      });
}

void MapModel::updateContents() {
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

void MapModel::applyAnswers(const Answers& answers) {
    bool isChanged = false;
    for (const auto& [node, item] : answers) {
        const auto refusal = item ? textOf(item->blockedReason.value_or("")) : tr("It is not there any more");
        const auto note = item ? textOf(item->note.value_or("")) : QString();
        if (refusals_.contains(node) && refusals_[node] == refusal && notes_[node] == note)
            continue;
        refusals_[node] = refusal;
        notes_[node] = note;
        isChanged = true;
    }
    if (isChanged)
        list_.rows()->tellTicks();
}

QString MapModel::noteOf(NodeIndex node) const {
    const auto known = notes_.find(node);
    return known == notes_.end() ? noteText(*tree_, node) : known->second;
}

/// What the list shows from here on is locked where it has to be; of the rest, each row when it is wanted.
void MapModel::checkRows(int first) {
    constexpr int mostAsked = 100;
    if (first == 0)
        rowsJob_.drop();
    const auto& rows = *list_.rows();
    std::vector<NodeIndex> asked;
    for (int row = first; row < std::min(rows.rowCount(), first + mostAsked); ++row) {
        if (!refusals_.contains(rows.nodeAt(row)))
            asked.push_back(rows.nodeAt(row));
    }
    if (asked.empty() || !isTickable())
        return;
    rowsJob_.add(
        [tree = tree_, asked = std::move(asked), policy = policy_] {
            Answers answers;
            for (const NodeIndex node : asked)
                answers.emplace_back(node,
                                     isWorkFolder(*tree, node)
                                         ? itemWithRepositories(*tree, node, *policy)
                                         : DeletionItem::fromTree(*tree, node, DeletionModule::map, *policy));
            return answers;
        },
        [this](const Answers& answers) { applyAnswers(answers); });
}

void MapModel::toggleTick(quint32 node) {
    if (node >= tree_->count() || !tree_->isAttached(node))
        return;
    if (!isTickable()) {
        tellRefusal(node);
        return;
    }
    const auto path = tree_->path(node, canonicalizer());
    if (const auto* over = ticks_.covering(path)) {
        if (over->item.path == path)
            ticks_.untick(std::string(over->item.id));
        else
            tellRefusal(node);
        return;
    }
    using Answer = std::pair<std::optional<DeletionItem>, TickedItem>;
    ticking_.add(
        [tree = tree_, node, policy = policy_] {
            Answer answer{itemWithRepositories(*tree, node, *policy), {}};
            if (answer.first)
                answer.second = TickedItem::ofNode(*answer.first, *tree, node);
            return answer;
        },
        [this, node](Answer answer) {
            applyAnswers({{node, answer.first}});
            if (answer.first && answer.first->isSelectable())
                ticks_.setTicked(std::move(answer.second), true);
            else
                tellRefusal(node);
        });
}

void MapModel::tellRefusal(quint32 node) const {
    Q_EMIT tickRefused(node == 0 ? rootName() : textOf(tree_->nameBytes(node)), tickRefusal(node));
}

void MapModel::tickAll() {
    if (tree_->count() == 0 || !isTickable())
        return;
    tickingAll_.run(
        [this, tree = tree_, policy = policy_, rows = list_.rows()->shown()](const LatestJob::Run& run) {
            auto sorted = sortedOut(*tree, rows, *policy, run);
            run.report([this, refused = std::move(sorted.refused)] { applyAnswers(refused); });
            return std::move(sorted.items);
        });
}

bool MapModel::isTicked(quint32 node) const {
    return node < tree_->count() && tickState(node) == Qt::Checked;
}

Qt::CheckState MapModel::tickState(NodeIndex node) const {
    if (ticks_.count() == 0)
        return Qt::Unchecked;
    const auto path = tree_->path(node, canonicalizer());
    if (ticks_.covering(path) != nullptr)
        return Qt::Checked;
    return ticks_.anyInside(path) ? Qt::PartiallyChecked : Qt::Unchecked;
}

QString MapModel::tickRefusal(quint32 node) const {
    if (node >= tree_->count() || !isTickable())
        return elsewhere_;
    if (ticks_.count() > 0) {
        const auto path = tree_->path(node, canonicalizer());
        if (const auto* over = ticks_.covering(path); over != nullptr && over->item.path != path)
            return tr("Moves with %1").arg(textOf(over->item.title));
    }
    const auto known = refusals_.find(node);
    return known == refusals_.end() ? QString() : known->second;
}

QList<quint32> MapModel::tickedNodes() const {
    // Mostly many of few folders: each folder's names are looked through once.
    std::unordered_map<std::string_view, std::unordered_map<std::string_view, NodeIndex>> folders;
    QList<quint32> nodes;
    for (const auto& [path, ticked] : ticks_.byPath()) {
        const auto above = parentPath(path);
        const auto [folder, isNew] = folders.try_emplace(above);
        if (isNew) {
            if (const auto node = tree_->index(std::string(above), canonicalizer())) {
                for (const NodeIndex child : tree_->children(*node))
                    folder->second.emplace(tree_->nameBytes(child), child);
            }
        }
        if (const auto node = folder->second.find(lastPathComponent(path)); node != folder->second.end())
            nodes << node->second;
    }
    return nodes;
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
    const auto path = tree_->path(node, canonicalizer());
    const auto whole = focusBytes();
    const bool isExcluded = tree_->isExcluded(node);
    return {.valid = true,
            .node = node,
            .key = keyOf(path),
            .name = node == 0 ? rootName() : textOf(tree_->nameBytes(node)),
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
    return focus_ == 0 ? rootName() : textOf(tree_->nameBytes(focus_));
}

std::uint64_t MapModel::focusBytes() const {
    if (tree_->count() == 0)
        return 0;
    return tree_->allocated(focus_) + (focus_ == 0 && coverage_ ? coverage_->notMeasured() : 0);
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

const PathCanonicalizer& MapModel::canonicalizer() const {
    return policy_->canonicalizer();
}

void MapModel::noteTiles(int tiles) const {
    if (environment_.diagnostics)
        environment_.diagnostics->setTiles(tiles);
}

} // namespace orbel
