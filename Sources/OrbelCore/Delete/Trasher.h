#pragma once

#include "Delete/DeletionItem.h"
#include "Delete/DeletionReport.h"
#include "Delete/InUse.h"
#include "Delete/TrashOperations.h"
#include "Journal/JournalStore.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace orbel {

/// The only code that moves anything to the Trash. For each item every check is made again immediately before
/// the move; the journal is proved writable and the intent written first, and afterwards it is verified that
/// what landed in the Trash is the very object that was approved. What is doubtful is skipped with a reason,
/// never forced, and what could make the record untrue ends the run. A stop never undoes a completed move.
///
/// Items are prepared, and their lines written, in groups, so that the disk is not waited for at each (see
/// MoveRecord). An item counts as moved once its line is on the disk.
///
/// A process that ends at any point leaves each item at its place or in the Trash, and in the latter case
/// either its line in the journal or the intent from which settleIntents() writes it.
///
/// A value; its functions can be replaced one by one. run() blocks and is called from one thread at a time;
/// `now` may be asked by two at once, since the next group is prepared while one moves.
struct Trasher {
    enum class Step : std::uint8_t { begun, moved, skipped };

    /// What becomes of the item at this place of the list. Each that is dealt with begins, one after another
    /// in their order, and ends as one of the others, perhaps only when further ones have begun. One whose
    /// name in the Trash was taken by another program may begin again.
    using Progress = std::function<void(std::size_t index, const DeletionItem& item, Step step)>;
    using IsCancelled = std::function<bool()>;

    /// With the live measuring, in-use check and clock.
    Trasher(SafetyPolicy safetyPolicy, std::shared_ptr<JournalStore> journalStore,
            std::shared_ptr<TrashOperations> trashOperations);

    SafetyPolicy policy;
    std::shared_ptr<JournalStore> journal;
    std::shared_ptr<TrashOperations> trash;
    std::function<TreeScanner::Measurement(const std::string& path)> measure;
    std::function<InUseReport(const std::string& path, const FileStamp& stamp,
                              const MappedFilesSnapshot& snapshot)>
        inUse;
    std::function<MappedFilesSnapshot()> takeMappedSnapshot;
    std::function<std::chrono::system_clock::time_point()> now;

    /// Moves the items in the given order. One that repeats, or lies in another one, moves only once (see
    /// takenAlong()). `progress` and `isCancelled`, which may be empty, are called on this thread;
    /// `isCancelled` before each item that is dealt with. An item in progress is always finished.
    DeletionReport run(std::span<const DeletionItem> items, const std::string& sessionID,
                       const Progress& progress, const IsCancelled& isCancelled) const;

    /// Makes every check and moves nothing: `moved` tells what run() would have tried to move. Nothing is
    /// written anywhere, so a journal or a Trash that cannot be written is not noticed.
    DeletionReport rehearse(std::span<const DeletionItem> items, const std::string& sessionID,
                            const Progress& progress, const IsCancelled& isCancelled) const;
};

} // namespace orbel
