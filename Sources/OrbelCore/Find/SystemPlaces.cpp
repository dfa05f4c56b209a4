#include "Find/SystemPlaces.h"

#include "Safety/PathCanonicalizer.h"
#include "Scan/TreeScanner.h"

#include <algorithm>
#include <optional>

namespace orbel {

namespace {

using platform::FolderSize;

/// Absent when the tree does not know: what it left out, what another name was counted for, other volumes.
std::optional<FolderSize> sizeIn(const FileTree& tree, const std::string& path) {
    const auto folder = tree.index(path, PathCanonicalizer::shared());
    if (!folder || tree.otherVolumeInside(*folder))
        return std::nullopt;
    for (std::vector<NodeIndex> open{*folder}; !open.empty();) {
        const auto node = open.back();
        open.pop_back();
        if (tree.isExcluded(node) || tree.flags(node).contains(NodeFlags::linkCountedElsewhere))
            return std::nullopt;
        const auto children = tree.children(node);
        open.insert(open.end(), children.begin(), children.end());
    }
    return FolderSize{.bytes = tree.allocated(*folder), .isComplete = tree.unreadableIn(*folder) == 0};
}

} // namespace

std::vector<SystemPlace> SystemPlaces::find(const std::string& home, const FileTree& tree,
                                            const ScanCancellation& cancellation, const Source& source) {
    auto places = source(home, [&](const std::string& path) {
        if (cancellation.isCancelled())
            return FolderSize();
        if (const auto known = sizeIn(tree, path))
            return *known;
        const auto walked =
            TreeScanner::measurement(TreeScanner::scan(path, std::nullopt, cancellation, nullptr).tree);
        return FolderSize{.bytes = walked.bytes, .isComplete = walked.unreadable == 0};
    });
    if (cancellation.isCancelled())
        return {};
    std::erase_if(places, [](const SystemPlace& place) { return place.bytes < leastBytes; });
    std::ranges::stable_sort(places, std::ranges::greater(), &SystemPlace::bytes);
    return places;
}

} // namespace orbel
