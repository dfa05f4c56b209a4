#include "Find/EmptyFolderFinder.h"

#include "Find/PlaceMarks.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/EmptyFolderMask.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace orbel {

namespace {

/// Per node: 1 for an empty folder that may go as far as its place tells.
std::vector<std::uint32_t> emptyFolders(const FileTree& tree, const std::vector<PlaceMarks>& marks) {
    const auto isEmpty = emptyFolderMask(tree);
    std::vector<std::uint32_t> counts(tree.count(), 0);
    for (NodeIndex i = 1; i < tree.count(); ++i)
        counts[i] = isEmpty[i] && marks[i].isNone() ? 1 : 0;
    return counts;
}

/// Per node: how many empty folders it and those below it are, when all of them may go; else 0.
void addUp(const FileTree& tree, std::vector<std::uint32_t>& counts) {
    // Children come after their parents: seen from the end, each folder is settled before the one around it.
    for (auto i = static_cast<NodeIndex>(tree.count()); i-- > 1;) {
        const auto parent = tree.parentIndex[i];
        if (parent == FileTree::noParent || counts[parent] == 0 || !tree.isFolder(i))
            continue;
        counts[parent] = counts[i] == 0 ? 0 : counts[parent] + counts[i];
    }
}

std::vector<std::uint32_t> emptyFolderCounts(const FileTree& tree, const SafetyPolicy& policy) {
    auto counts = emptyFolders(tree, placeMarks(tree, policy));
    if (const auto home = tree.index(policy.homePath(), PathCanonicalizer::shared()))
        for (const NodeIndex child : tree.children(*home))
            counts[child] = 0;
    for (const auto& folder : policy.namedFolders())
        if (const auto node = tree.index(folder, PathCanonicalizer::shared()))
            counts[*node] = 0;
    addUp(tree, counts);
    return counts;
}

/// Whether a folder is listed, and not one that it lies in.
bool isTopmost(const std::vector<std::uint32_t>& counts, const FileTree& tree, NodeIndex i) {
    return counts[i] > 0 && counts[tree.parentIndex[i]] == 0;
}

Date latestChange(const FileTree& tree, NodeIndex folder) {
    Date latest = tree.modified(folder);
    std::vector<NodeIndex> pending{folder};
    while (!pending.empty()) {
        const auto node = pending.back();
        pending.pop_back();
        latest = std::max(latest, Date(tree.modified(node)));
        for (const NodeIndex child : tree.children(node))
            if (tree.isFolder(child))
                pending.push_back(child);
    }
    return latest;
}

void sortByPath(std::vector<EmptyFolderFinder::Row>& rows) {
    std::ranges::sort(rows, {},
                      [](const EmptyFolderFinder::Row& row) -> const std::string& { return row.item.path; });
}

} // namespace

std::vector<EmptyFolderFinder::Row> EmptyFolderFinder::run(const FileTree& tree, const SafetyPolicy& policy,
                                                           Date now, const IsCancelled& isCancelled) const {
    const auto counts = emptyFolderCounts(tree, policy);
    std::vector<Row> rows;
    auto seen = policy.seenFolders();
    for (NodeIndex i = 1; i < tree.count(); ++i) {
        if (!isTopmost(counts, tree, i))
            continue;
        if (isCancelled && isCancelled())
            break;
        auto item = DeletionItem::emptyFolder(tree, i, counts[i], policy, seen);
        if (!item)
            continue;
        Row row{
            .index = i, .item = *std::move(item), .nestedCount = counts[i], .changed = latestChange(tree, i)};
        const std::chrono::duration<double> age = now - row.changed;
        row.item.preselected = row.item.isSelectable() && age.count() >= settledFor;
        rows.push_back(std::move(row));
    }
    sortByPath(rows);
    return rows;
}

std::vector<EmptyFolderFinder::Row> EmptyFolderFinder::shownOnly(const FileTree& tree) {
    auto counts = emptyFolders(tree, placeMarks(tree));
    addUp(tree, counts);
    std::vector<Row> rows;
    for (NodeIndex i = 1; i < tree.count(); ++i)
        if (isTopmost(counts, tree, i))
            rows.push_back({.index = i,
                            .item = DeletionItem::shownOnly(tree, i, DeletionModule::emptyFolders),
                            .nestedCount = counts[i],
                            .changed = latestChange(tree, i)});
    sortByPath(rows);
    return rows;
}

} // namespace orbel
