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

/// What emptying the Trash frees of several: "Frees 20.8 GB – 26.7 GB", or one figure when that is
/// certain; "Frees at least 20.8 GB" when something in them could not be read.
QString freesText(const std::vector<TickedItem>& items);

/// At most 2^64 - 1.
std::uint64_t saturatingSum(std::uint64_t a, std::uint64_t b);

/// The sum of the items' sizes, at most 2^64 - 1.
std::uint64_t bytesOf(const std::vector<TickedItem>& items);

} // namespace orbel
