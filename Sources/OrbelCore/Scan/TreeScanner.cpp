#include "Scan/TreeScanner.h"

#include "Platform/BlockingWork.h"
#include "Platform/FileStatus.h"
#include "Safety/NeverTouch.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/ProtectedContent.h"
#include "Scan/EmptyFolderMask.h"
#include "Scan/FolderShapes.h"
#include "Scan/Walker.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

namespace {

constexpr std::chrono::duration<double> progressInterval(0.25);

bool isProtectedName(std::string_view name) {
    return NeverTouch::isProtectedName(name) || ProtectedContent::meaningOf(name);
}

std::optional<std::string> pathOf(const FileTree& tree, std::optional<NodeIndex> node) {
    return node ? std::optional(tree.path(*node, PathCanonicalizer::shared())) : std::nullopt;
}

std::optional<NodeIndex> firstProtected(const FileTree& tree) {
    const bool isShaped = std::ranges::any_of(shapedFolders(tree), [](const ShapedFolder& folder) {
        return folder.node == 0 && folder.shape->isProtected;
    });
    return isShaped || isProtectedName(lastPathComponent(tree.rootPath)) ? 0 : tree.protectedInside(0);
}

} // namespace

std::future<ScanResult> TreeScanner::scanInBackground(std::string root, std::optional<int> workers,
                                                      std::shared_ptr<const ScanCancellation> cancellation,
                                                      ScanProgressCallback progress) {
    return BlockingWork::run(
        "orbel.scan",
        [root = std::move(root), workers, cancellation = std::move(cancellation),
         progress = std::move(progress)] { return scan(root, workers, *cancellation, progress); });
}

ScanResult TreeScanner::scan(const std::string& root, std::optional<int> workers,
                             const ScanCancellation& cancellation, const ScanProgressCallback& progress,
                             const Exclusions& exclusions) {
    const auto start = std::chrono::steady_clock::now();
    ScanResult result;
    result.startedAt = std::chrono::system_clock::now();
    const auto noteFirst = [&](const ScanProgress& report) {
        if (report.entries > 0 && !result.firstProgress)
            result.firstProgress = report.elapsed;
        if (progress)
            progress(report);
    };
    auto walked = Walker::walk(root, workers, cancellation, progressInterval, noteFirst, exclusions);
    result.tree = std::move(walked.tree);
    result.cancelled = walked.cancelled;
    result.duration = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}

TreeScanner::Measurement TreeScanner::measure(const std::string& path, std::optional<int> workers) {
    const auto status = platform::fileStatus(path);
    if (!status)
        return {.unreadable = 1};
    if (status->type == platform::FileType::directory) {
        const ScanCancellation nobodyCancels;
        return measurement(Walker::walk(path, workers, nobodyCancels, progressInterval, nullptr).tree);
    }
    Measurement measurement{.bytes = status->allocatedBytes};
    if (isProtectedName(lastPathComponent(path)))
        measurement.protectedInside = path;
    return measurement;
}

TreeScanner::Measurement TreeScanner::measurement(const FileTree& tree) {
    if (tree.count() == 0) // it vanished after it was looked at
        return {.unreadable = 1};
    return {.bytes = tree.allocated(0),
            .unreadable = tree.unreadableCount,
            .protectedInside = pathOf(tree, firstProtected(tree)),
            .otherVolumeInside = pathOf(tree, tree.otherVolumeInside(0)),
            .isEmptyFolder = tree.unreadableCount == 0 && emptyFolderMask(tree)[0]};
}

} // namespace orbel
