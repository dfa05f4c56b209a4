#include "AppModel/ItemMeasure.h"

#include "Delete/ExclusionReason.h"
#include "Platform/FileStatus.h"
#include "Util/PathText.h"

namespace orbel {

TreeScanner::Measurement ItemMeasure::measure(const std::string& path) {
    const auto status = platform::fileStatus(path);
    if (!status || status->type != platform::FileType::directory)
        return TreeScanner::measure(path);
    const auto tree = TreeScanner::scan(path, std::nullopt, cancellation_, nullptr).tree;
    const auto measured = TreeScanner::measurement(tree);
    if (tree.count() > 0)
        seen_[path] = TickedItem::ofNode(DeletionItem(), tree, 0);
    return measured;
}

TickedItem ItemMeasure::ticked(DeletionItem& item, const Exclusions& exclusions,
                               const std::string& home) const {
    if (auto reason = item.isSelectable() ? exclusionReason(exclusions, item.path, home) : std::nullopt) {
        item.blockedReason = std::move(reason);
        item.preselected = false;
    }
    if (const auto seen = seen_.find(item.path); seen != seen_.end()) {
        auto ticked = seen->second;
        ticked.item = item;
        return ticked;
    }
    const bool isFolder = item.scanStamp.isDirectory;
    auto ticked = TickedItem::alone(item, classifyContent(lastPathComponent(item.path), isFolder));
    // What a file with other names holds stays with them.
    const auto status = platform::fileStatus(item.path);
    ticked.leastFreed = status && status->linkCount > 1 ? 0 : item.estimatedBytes;
    return ticked;
}

} // namespace orbel
