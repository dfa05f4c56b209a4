#include "Scan/TreeScanner.h"

#include "Platform/FileStatus.h"
#include "Safety/NeverTouch.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/EmptyFolderMask.h"
#include "Scan/Walker.h"
#include "Util/BlockingWork.h"
#include "Util/PathText.h"

namespace orbel {

namespace {

constexpr std::chrono::duration<double> progressInterval(0.25);

std::optional<std::string> firstProtectedPath(const FileTree& tree) {
    for (NodeIndex i = 0; i < tree.count(); ++i) {
        if (NeverTouch::hasProtectedComponent(i == 0 ? lastPathComponent(tree.rootPath) : tree.nameBytes(i)))
            return tree.path(i, PathCanonicalizer::shared());
    }
    return std::nullopt;
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
                             const ScanCancellation& cancellation, const ScanProgressCallback& progress) {
    const auto start = std::chrono::steady_clock::now();
    ScanResult result;
    result.startedAt = std::chrono::system_clock::now();
    const auto noteFirst = [&](const ScanProgress& report) {
        if (report.entries > 0 && !result.firstProgress)
            result.firstProgress = report.elapsed;
        if (progress)
            progress(report);
    };
    auto walked = Walker::walk(root, workers, cancellation, progressInterval, noteFirst);
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
    if (NeverTouch::hasProtectedComponent(lastPathComponent(path)))
        measurement.protectedInside = path;
    return measurement;
}

TreeScanner::Measurement TreeScanner::measurement(const FileTree& tree) {
    if (tree.count() == 0) // it vanished after it was looked at
        return {.unreadable = 1};
    return {.bytes = tree.allocated(0),
            .unreadable = tree.unreadableCount,
            .protectedInside = firstProtectedPath(tree),
            .isEmptyFolder = tree.unreadableCount == 0 && emptyFolderMask(tree)[0]};
}

} // namespace orbel
