#include "AppModel/MapTicking.h"

#include "Delete/ItemNote.h"
#include "Delete/RepositoryNote.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace orbel {

namespace {

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

} // namespace

MapTicking::MapTicking(std::shared_ptr<const SafetyPolicy> policy, MapListModel& rows)
    : policy_(std::move(policy)), rows_(rows) {
    rows_.setTicking([this](NodeIndex node) { return stateOf(node); },
                     [this](NodeIndex node) { return refusalOf(node); },
                     [this](NodeIndex node) { return noteOf(node); });
    connect(&ticks_, &Ticks::changed, this, [this] {
        rows_.tellTicks();
        Q_EMIT changed();
    });
}

void MapTicking::setTree(std::shared_ptr<const FileTree> tree, QString elsewhere) {
    tree_ = std::move(tree);
    elsewhere_ = std::move(elsewhere);
    refusals_.clear();
    notes_.clear();
    ticking_.drop();
    tickingAll_.drop();
    rowsJob_.drop();
    select(std::nullopt);
    Q_EMIT changed();
}

void MapTicking::select(std::optional<NodeIndex> node) {
    selected_ = node;
    selectionJob_.drop();
    isMovable_ = false;
    refusal_ = elsewhere_;
    Q_EMIT answered();
    if (!selected_ || !isPossible())
        return;
    selectionJob_.run([tree = tree_, asked = *selected_,
                       policy = policy_] { return itemWithRepositories(*tree, asked, *policy); },
                      [this](const std::optional<DeletionItem>& item) {
                          applyAnswers({{*selected_, item}});
                          refusal_ = refusalOf(*selected_);
                          isMovable_ = refusal_.isEmpty();
                          Q_EMIT answered();
                      });
}

void MapTicking::applyAnswers(const Answers& answers) {
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
        rows_.tellTicks();
}

void MapTicking::checkRows(int first) {
    constexpr int mostAsked = 100;
    if (first == 0)
        rowsJob_.drop();
    std::vector<NodeIndex> asked;
    for (int row = first; row < std::min(rows_.rowCount(), first + mostAsked); ++row) {
        if (!refusals_.contains(rows_.nodeAt(row)))
            asked.push_back(rows_.nodeAt(row));
    }
    if (asked.empty() || !isPossible())
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

void MapTicking::toggle(quint32 node) {
    if (node >= tree_->count() || !tree_->isAttached(node))
        return;
    if (!isPossible()) {
        Q_EMIT refused(node, elsewhere_);
        return;
    }
    const auto path = tree_->path(node, canonicalizer());
    if (const auto* over = ticks_.covering(path)) {
        if (over->item.path == path)
            ticks_.untick(std::string(over->item.id));
        else
            Q_EMIT refused(node, refusalOf(node));
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
                Q_EMIT refused(node, refusalOf(node));
        });
}

void MapTicking::tickAll() {
    if (tree_->count() == 0 || !isPossible())
        return;
    tickingAll_.run([this, tree = tree_, policy = policy_, rows = rows_.shown()](const LatestJob::Run& run) {
        auto sorted = sortedOut(*tree, rows, *policy, run);
        run.report([this, refused = std::move(sorted.refused)] { applyAnswers(refused); });
        return std::move(sorted.items);
    });
}

bool MapTicking::isTicked(quint32 node) const {
    return node < tree_->count() && stateOf(node) == Qt::Checked;
}

Qt::CheckState MapTicking::stateOf(NodeIndex node) const {
    if (ticks_.count() == 0)
        return Qt::Unchecked;
    const auto path = tree_->path(node, canonicalizer());
    if (ticks_.covering(path) != nullptr)
        return Qt::Checked;
    return ticks_.anyInside(path) ? Qt::PartiallyChecked : Qt::Unchecked;
}

QString MapTicking::refusalOf(quint32 node) const {
    if (node >= tree_->count() || !isPossible())
        return elsewhere_;
    if (ticks_.count() > 0) {
        const auto path = tree_->path(node, canonicalizer());
        if (const auto* over = ticks_.covering(path); over != nullptr && over->item.path != path)
            return tr("Moves with %1").arg(textOf(over->item.title));
    }
    const auto known = refusals_.find(node);
    return known == refusals_.end() ? QString() : known->second;
}

QString MapTicking::noteOf(NodeIndex node) const {
    const auto known = notes_.find(node);
    return known == notes_.end() ? noteText(*tree_, node) : known->second;
}

QList<quint32> MapTicking::nodes() const {
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

} // namespace orbel
