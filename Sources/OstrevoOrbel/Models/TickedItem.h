#pragma once

#include "Delete/DeletionItem.h"
#include "Scan/ContentKind.h"

#include <cstdint>
#include <QString>
#include <string>
#include <vector>

namespace orbel {

/// A deletion item that is to be moved, with what the confirmation tells of it. A plain value.
struct TickedItem {
    DeletionItem item;
    ContentKind kind = ContentKind::other; ///< of its chip
    QString kindName;                      ///< "Video", "Folder"
    std::uint64_t count = 1;               ///< files and folders that move, the item itself included
    /// What emptying the Trash frees of it for sure: at most the item's own bytes, fewer when some of them
    /// are shared with something that stays.
    std::uint64_t leastFreed = 0;

    /// Of a node. Looks at everything in it, so a large folder is not for the main thread.
    static TickedItem ofNode(DeletionItem item, const FileTree& tree, NodeIndex node);

    /// Of an item that stands alone: nothing is known to be in it, and with a note that says less it
    /// may free nothing.
    static TickedItem alone(DeletionItem item, ContentKind kind);

    bool operator==(const TickedItem&) const = default;
};

/// Of several items together. No sum is larger than 2^64 - 1.
struct TickedSums {
    std::uint64_t bytes = 0;
    std::uint64_t leastFreed = 0;
    std::uint64_t count = 0;     ///< files and folders that move, the items themselves included
    bool isPartlyUnread = false; ///< something in them could not be read

    void add(const TickedItem& item);
    /// What emptying the Trash frees: "Frees 20.8 GB – 26.7 GB", or one figure when that is certain; "Frees
    /// at least 20.8 GB" when something could not be read.
    QString freesText() const;
};

TickedSums sumsOf(const std::vector<TickedItem>& items);

} // namespace orbel
