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

/// Per node: how many empty folders it and those below it are, when all of them may go; else 0.
std::vector<std::uint32_t> emptyFolderCounts(const FileTree& tree, const SafetyPolicy& policy) {
    const auto isEmpty = emptyFolderMask(tree);
    const auto marks = placeMarks(tree, policy);
    std::vector<std::uint32_t> counts(tree.count(), 0);
    const auto home = tree.index(policy.homePath(), PathCanonicalizer::shared());
    for (NodeIndex i = 1; i < tree.count(); ++i)
        counts[i] = isEmpty[i] && marks[i].isNone() && tree.parent(i) != home ? 1 : 0;
    for (const auto& folder : policy.namedFolders())
        if (const auto node = tree.index(folder, PathCanonicalizer::shared()))
            counts[*node] = 0;
    // Children come after their parents: seen from the end, each folder is settled before the one around it.
    for (auto i = static_cast<NodeIndex>(tree.count()); i-- > 1;) {
        const auto parent = tree.parentIndex[i];
        if (parent == FileTree::noParent || counts[parent] == 0 || !tree.isFolder(i))
            continue;
        counts[parent] = counts[i] == 0 ? 0 : counts[parent] + counts[i];
    }
    return counts;
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

} // namespace

std::vector<EmptyFolderFinder::Row> EmptyFolderFinder::run(const FileTree& tree, const SafetyPolicy& policy,
                                                           Date now, const IsCancelled& isCancelled) const {
    const auto counts = emptyFolderCounts(tree, policy);
    std::vector<Row> rows;
    auto seen = policy.seenFolders();
    for (NodeIndex i = 1; i < tree.count(); ++i) {
        const bool isTopmost = counts[i] > 0 && counts[tree.parentIndex[i]] == 0;
        if (!isTopmost)
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
    std::ranges::sort(rows, {}, [](const Row& row) -> const std::string& { return row.item.path; });
    return rows;
}

} // namespace orbel
