#include "Models/TickedItem.h"

#include "Delete/ItemNote.h"
#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"

#include <algorithm>
#include <limits>
#include <QCoreApplication>
#include <unordered_map>

namespace orbel {

namespace {

/// What is in it and on it alone: blocks that may be shared do not count, and a file with several names only
/// when all of them are in it.
std::uint64_t certainBytes(const FileTree& tree, NodeIndex top) {
    struct Links {
        std::uint64_t bytes = 0;
        std::uint64_t found = 0;
        std::uint64_t all = 0;
    };
    std::unordered_map<FileIdentity, Links> linked;
    std::uint64_t certain = 0;
    std::vector<NodeIndex> open{top};
    while (!open.empty()) {
        const NodeIndex node = open.back();
        open.pop_back();
        if (tree.isFolder(node)) {
            const auto children = tree.children(node);
            open.insert(open.end(), children.begin(), children.end());
        } else if (tree.flags(node).intersects(NodeFlags::mayShareBlocks | NodeFlags::otherVolume)) {
            continue;
        } else if (tree.linkCount(node) >= 2) {
            auto& links = linked[tree.identity(node)];
            links.all = tree.linkCount(node);
            ++links.found;
            links.bytes += tree.allocated(node);
        } else {
            certain += tree.allocated(node);
        }
    }
    for (const auto& [file, links] : linked)
        certain += links.found >= links.all ? links.bytes : 0;
    return std::min(certain, tree.allocated(top));
}

/// At most 2^64 - 1.
std::uint64_t saturatingSum(std::uint64_t a, std::uint64_t b) {
    return b > std::numeric_limits<std::uint64_t>::max() - a ? std::numeric_limits<std::uint64_t>::max()
                                                             : a + b;
}

} // namespace

TickedItem TickedItem::ofNode(DeletionItem item, const FileTree& tree, NodeIndex node) {
    return {.item = std::move(item),
            .kind = TreemapModel::contentKind(tree, node),
            .kindName = kindText(tree, node),
            .count = std::uint64_t{tree.descendantCount(node)} + 1,
            .leastFreed = certainBytes(tree, node)};
}

TickedItem TickedItem::alone(DeletionItem item, ContentKind kind) {
    const auto bytes = ItemNote::saysLess(item.note) ? 0 : item.estimatedBytes;
    return {.item = std::move(item),
            .kind = kind,
            .kindName = kind == ContentKind::folder ? QCoreApplication::translate("Ticks", "Folder")
                                                    : textOf(title(kind)),
            .count = 1,
            .leastFreed = bytes};
}

void TickedSums::add(const TickedItem& item) {
    bytes = saturatingSum(bytes, item.item.estimatedBytes);
    leastFreed = saturatingSum(leastFreed, item.leastFreed);
    count = saturatingSum(count, item.count);
    isPartlyUnread = isPartlyUnread || ItemNote::saysMore(item.item.note);
}

QString TickedSums::freesText() const {
    const auto most = ByteFigure(bytes).text();
    const auto from = ByteFigure(std::min(leastFreed, bytes)).text();
    if (isPartlyUnread)
        return QCoreApplication::translate("Ticks", "Frees at least %1").arg(from);
    return from == most ? QCoreApplication::translate("Ticks", "Frees %1").arg(most)
                        : QCoreApplication::translate("Ticks", "Frees %1 – %2").arg(from, most);
}

TickedSums sumsOf(const std::vector<TickedItem>& items) {
    TickedSums sums;
    for (const auto& item : items)
        sums.add(item);
    return sums;
}

} // namespace orbel
