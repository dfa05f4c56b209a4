#include "Scan/Walker.h"

#include "Platform/Conventions.h"
#include "Platform/FileStatus.h"
#include "Safety/RealPath.h"
#include "Scan/WalkMerge.h"
#include "Scan/WalkWorker.h"
#include "Util/PathText.h"

#include <algorithm>
#include <cerrno>

namespace orbel {

namespace {

using namespace walk;
using Clock = std::chrono::steady_clock;

/// What a walk does with its descriptors.
struct DescriptorShare {
    int workers = 1;     ///< at most
    int openFolders = 0; ///< that may stay open for what lies inside
};

DescriptorShare descriptorShare(int wantedWorkers) {
    constexpr int perWorker = 2; // a folder, and the one that it is opened in
    const auto descriptors = static_cast<int>(descriptorsForOneTask());
    const int workers = std::clamp(descriptors / (2 * perWorker), 1, wantedWorkers);
    return {.workers = workers, .openFolders = std::max(descriptors - workers * perWorker - 1, 0)};
}

void appendRoot(FileTree& tree, const platform::FileStatus& status) {
    const bool isFolder = status.type == platform::FileType::directory;
    NodeFlags flags;
    if (isFolder)
        flags = NodeFlags::folder;
    else if (status.type == platform::FileType::symbolicLink)
        flags = NodeFlags::symlink;

    tree.append({.allocated = isFolder ? 0 : status.allocatedBytes,
                 .logical = status.size,
                 .modifiedMinutes = minutesOf(status.modifiedSeconds),
                 .inode = status.inode,
                 .linkCount = cappedLinks(status.linkCount),
                 .flags = flags,
                 .kind = classify(lastPathComponent(tree.rootPath), isFolder, false)});
    tree.device = status.device;
}

ScanProgress snapshot(WalkContext& context, std::span<const WorkerCounters> counters,
                      Clock::time_point start) {
    ScanProgress progress;
    for (const WorkerCounters& worker : counters) {
        progress.entries += worker.entries.load(std::memory_order_relaxed);
        progress.bytes += worker.bytes.load(std::memory_order_relaxed);
        progress.unreadable += worker.unreadable.load(std::memory_order_relaxed);
    }
    {
        const std::scoped_lock lock(context.slotsMutex);
        progress.topLevel.reserve(context.slots.size());
        for (const Slot& slot : context.slots)
            progress.topLevel.push_back({.name = slot.name,
                                         .bytes = slot.bytes.load(std::memory_order_relaxed),
                                         .isFolder = slot.isFolder});
    }
    std::ranges::stable_sort(progress.topLevel, std::greater{}, &ScanProgress::TopLevel::bytes);
    progress.elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    return progress;
}

bool isGone(int error) {
    return error == ENOENT || error == ENOTDIR;
}

/// Lists everything below the root of `tree`, which is a folder, and merges it. A root that vanished leaves
/// the tree empty.
void walkFolder(FileTree& tree, int wantedWorkers, const ScanCancellation& cancellation,
                std::chrono::duration<double> interval, const ScanProgressCallback& progress) {
    const auto start = Clock::now();
    PageArray<std::byte> buffer(platform::DirectoryReader::bufferBytes);
    const auto root = DescriptorShortage(cancellation).waitFor([&] {
        return platform::DirectoryReader::open(-1, tree.rootPath.c_str(), buffer.span());
    });
    if (!root) {
        if (isGone(root.error())) {
            tree = FileTree(tree.rootPath, tree.requestedRootPath);
            return;
        }
        tree.nodeFlags[0] |= NodeFlags::unreadable.rawValue;
        tree.unreadableCount = 1;
        tree.finalize({});
        if (progress)
            progress(ScanProgress{.unreadable = 1, .topLevel = {}});
        return;
    }
    platform::MountIdentity place{.device = tree.device, .mountId = 0};
    if (const auto own = root->measure())
        place = own->place;
    const auto share = descriptorShare(wantedWorkers);
    const int workers = share.workers;
    WalkContext context{
        .rootPath = tree.rootPath,
        .rootDescriptor = root->descriptor(),
        .place = place,
        .boundary = MountBoundary(platform::mountTable(), tree.rootPath, place.mountId),
        .exclusions = ExclusionRules(tree.exclusions, tree.rootPath),
        .cancellation = cancellation,
        .openFolderLimit = share.openFolders,
        .slotsMutex = {},
        .slots = {},
        .rootFlags = 0,
        .isRootGone = false,
    };

    std::vector<WorkerStore> stores(static_cast<std::size_t>(workers));
    std::vector<WorkerCounters> counters(static_cast<std::size_t>(workers));
    WorkUnit rootUnit;
    WalkQueue* queueOfWorkers = nullptr;
    WalkQueue queue(workers, Walker::workerStackBytes, [&](int number) {
        const auto i = static_cast<std::size_t>(number);
        WalkWorker(context, *queueOfWorkers, stores[i], counters[i]).run();
    });
    queueOfWorkers = &queue;
    queue.start(rootUnit);
    while (!queue.waitFor(interval)) {
        if (progress)
            progress(snapshot(context, counters, start));
    }
    queue.join();
    if (progress)
        progress(snapshot(context, counters, start));

    for (const WorkerCounters& worker : counters) {
        tree.unreadableCount += worker.unreadable;
        tree.datalessCount += worker.dataless;
        tree.otherVolumeCount += worker.otherVolume;
    }
    if (context.isRootGone) {
        tree = FileTree(tree.rootPath, tree.requestedRootPath);
        return;
    }
    merge(rootUnit, stores, tree);
    tree.nodeFlags[0] |= context.rootFlags;
    tree.finalize(tree.hardLinkCandidates());
}

} // namespace

Walker::Result Walker::walk(const std::string& root, std::optional<int> workers,
                            const ScanCancellation& cancellation,
                            std::chrono::duration<double> progressInterval,
                            const ScanProgressCallback& progress, const Exclusions& exclusions) {
    Result result{.tree = FileTree(RealPath::resolve(root).value_or(root), root), .cancelled = false};
    FileTree& tree = result.tree;
    tree.exclusions = exclusions;
    const auto status = platform::fileStatus(tree.rootPath);
    if (status) {
        appendRoot(tree, *status);
        if (status->type == platform::FileType::directory)
            walkFolder(tree, std::max(workers.value_or(platform::conventions().defaultWalkerWorkers), 1),
                       cancellation, progressInterval, progress);
        else
            tree.finalize({});
    }
    result.cancelled = cancellation.isCancelled();
    return result;
}

} // namespace orbel
