#include "Delete/Trasher.h"

#include "Delete/TrashRun.h"

#include <utility>

namespace orbel {

Trasher::Trasher(SafetyPolicy safetyPolicy, std::shared_ptr<JournalStore> journalStore,
                 std::shared_ptr<TrashOperations> trashOperations)
    : policy(std::move(safetyPolicy)),
      journal(std::move(journalStore)),
      trash(std::move(trashOperations)),
      measure([](const std::string& path) { return TreeScanner::measure(path); }),
      inUse(orbel::inUse),
      takeMappedSnapshot(orbel::takeMappedSnapshot),
      now(std::chrono::system_clock::now) {}

DeletionReport Trasher::run(std::span<const DeletionItem> items, const std::string& sessionID,
                            const Progress& progress, const IsCancelled& isCancelled) const {
    return TrashRun(*this, TrashRun::Kind::move, sessionID, progress, isCancelled).over(items);
}

DeletionReport Trasher::rehearse(std::span<const DeletionItem> items, const std::string& sessionID,
                                 const Progress& progress, const IsCancelled& isCancelled) const {
    return TrashRun(*this, TrashRun::Kind::rehearsal, sessionID, progress, isCancelled).over(items);
}

} // namespace orbel
