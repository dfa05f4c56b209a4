#pragma once

#include "Platform/DirectoryReader.h"
#include "Scan/DescriptorShortage.h"
#include "Scan/ExclusionRules.h"
#include "Scan/MountBoundary.h"
#include "Scan/ScanCancellation.h"
#include "Scan/WalkQueue.h"
#include "Scan/WalkStore.h"

#include <atomic>
#include <deque>
#include <expected>
#include <mutex>
#include <string>

namespace orbel::walk {

/// Figures of one worker, written by it alone and read by the thread that reports progress.
struct alignas(64) WorkerCounters {
    std::atomic<std::uint64_t> entries = 0;
    std::atomic<std::uint64_t> bytes = 0;
    std::atomic<std::uint64_t> unreadable = 0;
    std::atomic<std::uint64_t> dataless = 0;
    std::atomic<std::uint64_t> otherVolume = 0;
};

/// What all workers of one walk share. Immutable, except where a member says otherwise.
struct WalkContext {
    std::string rootPath;
    int rootDescriptor = -1;       ///< open for the whole walk
    platform::MountIdentity place; ///< of the root; an entry with another one is on another volume
    MountBoundary boundary;
    ExclusionRules exclusions;
    const ScanCancellation& cancellation;

    /// How many folders may keep their descriptor open for what lies inside; beyond that, folders are opened
    /// along their path.
    int openFolderLimit = 0;
    /// Of all walks at once: descriptors belong to the process.
    inline static std::atomic<int> openFolders = 0;

    std::mutex slotsMutex; ///< guards that `slots` grows; the bytes in it are atomic
    std::deque<Slot> slots;

    std::atomic<std::uint8_t> rootFlags = 0; ///< NodeFlags to add to the root
    std::atomic<bool> isRootGone = false;    ///< nothing could be listed because the root vanished
};

/// Lists folders, one after another, into a store of its own.
class WalkWorker {
public:
    WalkWorker(WalkContext& context, WalkQueue& queue, WorkerStore& store, WorkerCounters& counters);

    /// Takes folders from the queue until the walk is over. After a cancellation the folders that are left
    /// are passed over, and a listing ends between two entries.
    void run();

private:
    void list(WorkUnit& unit);
    void recordUnopened(WorkUnit& unit, int error);
    std::optional<platform::DirectoryReader> open(WorkUnit& unit);
    std::optional<platform::DirectoryReader> openAlongPath(const WorkUnit& unit);
    static void releaseParent(const WorkUnit& unit);
    void keepOpen(WorkUnit& unit, platform::DirectoryReader& reader);
    void readEntries(WorkUnit& unit, platform::DirectoryReader& reader);
    void add(WorkUnit& unit, const platform::DirectoryEntry& entry);
    void addFolder(WorkUnit& unit, Chunk& chunk, std::uint32_t place, std::uint32_t nameStart, Slot* slot);
    bool isMountPoint(const WorkUnit& folder, std::string_view name) const;
    bool isExcluded(const WorkUnit& folder, std::string_view name) const;
    std::string pathOf(const WorkUnit& folder, std::string_view name) const;
    Slot* addSlot(std::string_view name, bool isFolder);
    void flag(const WorkUnit& unit, NodeFlags flags);
    void markUnreadable(const WorkUnit& unit);
    void markGone(const WorkUnit& unit);
    void countUnlisted(const WorkUnit& unit);
    void publish();

    WalkContext& context_;
    WalkQueue& queue_;
    WorkerStore& store_;
    WorkerCounters& counters_;
    PageArray<std::byte> buffer_;
    std::vector<WorkUnit*> stack_;
    std::vector<WorkUnit*> found_; // folders of the listing in progress
    std::string openName_;         // with a closing zero, for the system
    DescriptorShortage shortage_;

    // Not yet published.
    std::uint64_t entries_ = 0;
    std::uint64_t bytes_ = 0;
    std::uint64_t unreadable_ = 0;
    std::uint64_t dataless_ = 0;
    std::uint64_t otherVolume_ = 0;
    std::uint64_t slotBytes_ = 0;
};

} // namespace orbel::walk
