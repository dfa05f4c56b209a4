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

/// What the tree does not know of a candidate. Without an item it has no row.
struct LargeOldQuery::Asked {
    std::function<LastUsed(NodeIndex node, const std::string& path)> lastUsed;
    std::function<std::optional<DeletionItem>(NodeIndex node, const std::string& path)> item;
    std::function<std::vector<ProcessUse>(NodeIndex node, const std::string& path)> openBy;
};

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
    auto seen = policy.seenFolders();
    return rows(tree, now, isCancelled,
                {.lastUsed = [&](NodeIndex node,
                                 const std::string& path) { return reader.read(path, tree.modified(node)); },
                 .item =
                     [&](NodeIndex node, const std::string& /*path*/) {
                         return DeletionItem::fromTree(tree, node, DeletionModule::largeOld, policy, seen);
                     },
                 .openBy =
                     [&](NodeIndex node, const std::string& path) {
                         return openFiles.users(tree.identity(node), path,
                                                tree.flags(node).contains(NodeFlags::package));
                     }});
}

std::vector<LargeOldQuery::Row> LargeOldQuery::runOnTree(const FileTree& tree, Date now,
                                                         const std::string& reason,
                                                         const IsCancelled& isCancelled) const {
    return rows(tree, now, isCancelled,
                {.lastUsed = [&](NodeIndex node,
                                 const std::string& /*path*/) { return LastUsed{tree.modified(node)}; },
                 .item =
                     [&](NodeIndex node, const std::string& path) {
                         auto item =
                             DeletionItem::unasked(path, DeletionModule::largeOld, AllowedRoot::homeItem,
                                                   FileStamp(), tree.allocated(node));
                         item.blockedReason = reason;
                         item.note = DeletionItem::noteOn(tree, node);
                         return std::optional(std::move(item));
                     },
                 .openBy = [](NodeIndex /*node*/,
                              const std::string& /*path*/) { return std::vector<ProcessUse>(); }});
}

std::vector<LargeOldQuery::Row> LargeOldQuery::rows(const FileTree& tree, Date now,
                                                    const IsCancelled& isCancelled,
                                                    const Asked& asked) const {
    std::vector<Row> rows;
    for (const NodeIndex node : candidates(tree)) {
        if (isCancelled && isCancelled())
            break;
        const auto path = tree.path(node, PathCanonicalizer::shared());
        const auto lastUsed = asked.lastUsed(node, path);
        const std::chrono::duration<double> age = now - lastUsed.date;
        if (unusedFor && age.count() < *unusedFor)
            continue;
        auto item = asked.item(node, path);
        if (!item)
            continue;
        rows.push_back({.index = node,
                        .item = *std::move(item),
                        .bytes = tree.allocated(node),
                        .kind = tree.kind(node),
                        .lastUsed = lastUsed,
                        .openBy = asked.openBy(node, path)});
    }
    std::ranges::stable_sort(rows, std::ranges::greater(), &Row::bytes);
    return rows;
}

} // namespace orbel
