#include "Find/LargeOldQuery.h"

#include "Find/LastUsedReader.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/SafetyPolicy.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace orbel {

namespace {

/// Links are no files, cloud files free nothing, and of a group of hard links one member carries the bytes.
constexpr NodeFlags neverListed = NodeFlags::symlink | NodeFlags::dataless | NodeFlags::linkCountedElsewhere;

bool isPlainFolder(NodeFlags flags) {
    return flags.contains(NodeFlags::folder) && !flags.contains(NodeFlags::package);
}

} // namespace

std::vector<NodeIndex> LargeOldQuery::candidates(const FileTree& tree) const {
    std::vector<NodeIndex> found;
    // What is inside a package is part of it, and what was detached is not on the disk any more. Parents come
    // before their children, so one pass settles both.
    std::vector<bool> isPartOfAnother(tree.count(), false);
    for (NodeIndex i = 0; i < tree.count(); ++i) {
        const auto parent = tree.parentIndex[i];
        if (i > 0)
            isPartOfAnother[i] = parent == FileTree::noParent || isPartOfAnother[parent]
                                 || tree.flags(parent).contains(NodeFlags::package);
        const auto flags = tree.flags(i);
        if (!isPartOfAnother[i] && tree.allocatedBytes[i] >= minimumBytes && !isPlainFolder(flags)
            && !flags.intersects(neverListed) && !tree.isExcluded(i)
            && (kinds.empty() || kinds.contains(tree.kind(i)))
            && (contents.empty() || contents.contains(contentKind(tree, i))))
            found.push_back(i);
    }
    return found;
}

std::vector<LargeOldQuery::Row> LargeOldQuery::run(const FileTree& tree, const SafetyPolicy& policy, Date now,
                                                   const InUseChecker::OpenFiles& openFiles,
                                                   const IsCancelled& isCancelled) const {
    return run(tree, policy, now, openFiles, isCancelled, LastUsedReader(policy.homePath()));
}

std::vector<LargeOldQuery::Row> LargeOldQuery::run(const FileTree& tree, const SafetyPolicy& policy, Date now,
                                                   const InUseChecker::OpenFiles& openFiles,
                                                   const IsCancelled& isCancelled,
                                                   const LastUsedReader& reader) const {
    std::vector<Row> rows;
    auto seen = policy.seenFolders();
    for (const NodeIndex node : candidates(tree)) {
        if (isCancelled && isCancelled())
            break;
        const auto path = tree.path(node, PathCanonicalizer::shared());
        const auto lastUsed = reader.read(path, tree.modified(node));
        if (!isOldEnough(lastUsed, now))
            continue;
        auto item = DeletionItem::fromTree(tree, node, DeletionModule::largeOld, policy, seen);
        if (!item)
            continue;
        rows.push_back({.index = node,
                        .item = *std::move(item),
                        .bytes = tree.allocated(node),
                        .kind = tree.kind(node),
                        .lastUsed = lastUsed,
                        .openBy = openFiles.users(tree.identity(node), path,
                                                  tree.flags(node).contains(NodeFlags::package))});
    }
    std::ranges::stable_sort(rows, std::ranges::greater(), &Row::bytes);
    return rows;
}

std::vector<LargeOldQuery::Row> LargeOldQuery::shownOnly(const FileTree& tree, Date then,
                                                         const std::optional<std::string>& reason,
                                                         const IsCancelled& isCancelled) const {
    std::vector<Row> rows;
    for (const NodeIndex node : candidates(tree)) {
        if (isCancelled && isCancelled())
            break;
        const LastUsed lastUsed{.date = tree.modified(node), .isKnown = tree.isModifiedKnown(node)};
        if (unusedFor && (!lastUsed.isKnown || !isOldEnough(lastUsed, then)))
            continue;
        auto item = DeletionItem::shownOnly(tree, node, DeletionModule::largeOld);
        item.blockedReason = reason;
        rows.push_back({.index = node,
                        .item = std::move(item),
                        .bytes = tree.allocated(node),
                        .kind = tree.kind(node),
                        .lastUsed = lastUsed,
                        .openBy = {}});
    }
    std::ranges::stable_sort(rows, std::ranges::greater(), &Row::bytes);
    return rows;
}

bool LargeOldQuery::isOldEnough(const LastUsed& lastUsed, Date now) const {
    const std::chrono::duration<double> age = now - lastUsed.date;
    return !unusedFor || age.count() >= *unusedFor;
}

} // namespace orbel
