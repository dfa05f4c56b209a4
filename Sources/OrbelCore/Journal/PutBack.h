#pragma once

#include "Journal/JournalStore.h"
#include "Journal/RestoreOperations.h"
#include "Safety/SafetyPolicy.h"

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

class RestorableIndex;
struct Destination;

/// What became of one attempt to put an item back.
struct PutBackResult {
    std::string title;
    std::string path;                                 ///< where the item was, and belongs
    bool restored = false;                            ///< it is back there
    std::optional<std::string> reason = std::nullopt; ///< why not, or a warning although it is
    /// Why the journal could not be written, where that is the reason; it names the file.
    std::optional<std::string> journalFailure = std::nullopt;

    /// Both in one; empty when there is no reason.
    std::string explanation() const;

    bool operator==(const PutBackResult&) const = default;
};

/// What became of the attempts at one session.
struct PutBackSession {
    std::string sessionID{}; ///< empty when there was none
    std::vector<PutBackResult> results{};
    /// Why the journal could not be read, and nothing was tried; it names the file.
    std::optional<std::string> journalFailure = std::nullopt;
};

/// What putting an item back would come to now.
struct PutBackOutlook {
    enum class Kind : std::uint8_t {
        possible, ///< it lies in the Trash and may go back
        gone,     ///< it is not in the Trash any more
        occupied, ///< something stands where it was
        refused   ///< it lies in the Trash and may not go back for another reason
    };

    Kind kind = Kind::possible;
    std::optional<std::string> reason = std::nullopt; ///< why not, in the user's words; none when possible

    bool operator==(const PutBackOutlook&) const = default;
};

/// Moves items from the Trash back to where they were, one entry of the journal or a whole session. It trusts
/// nothing that it did not check again: the item must still lie in a Trash folder and be the object that was
/// moved, its old folder must be the same folder, nothing may stand in its place, and the safety policy must
/// allow it there. That folder is held open from these checks until the move was verified, so nothing that
/// takes its place on the path meanwhile gets the item. Every attempt has its line in the journal, which is
/// proved writable, and the intent written, before anything moves; only of an item that is not in the Trash
/// any more nothing is recorded. Intents and lines are written for groups of items (see MoveRecord).
///
/// A value; nothing here throws, each failure is a result. Calls block and come from one thread at a time.
class PutBack {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;
    using IsCancelled = std::function<bool()>;

    /// `trashFolders`: the folders that directly hold what was moved to the Trash; absent means the policy's.
    /// `now` gives the times of the lines.
    PutBack(SafetyPolicy policy, std::shared_ptr<JournalStore> journal,
            std::shared_ptr<RestoreOperations> restore,
            std::optional<std::vector<std::string>> trashFolders = std::nullopt,
            Clock now = std::chrono::system_clock::now);

    /// Absent when no entry of that id can be put back: it is back already, was never moved or is unknown.
    std::optional<PutBackResult> putBackEntry(const std::string& entryID) const;

    /// The entries of the session that are not back yet, the last one moved first; a failure does not stop
    /// the others. `isCancelled`, which may be empty, is asked before each; those not reached have no result.
    std::vector<PutBackResult> putBackSession(const std::string& sessionID,
                                              const IsCancelled& isCancelled = nullptr) const;

    /// The same for the newest session, by time, of which something can come back now. When nothing can, the
    /// results say what stands in the way of the newest session, and nothing is recorded.
    PutBackSession putBackLast(const IsCancelled& isCancelled = nullptr) const;

    /// The same for the entry of that id alone, or for the session when no such entry can be put back.
    PutBackSession putBackEntryOrSession(const std::string& id,
                                         const IsCancelled& isCancelled = nullptr) const;

    PutBackResult putBack(const JournalEntry& entry) const;

    /// Why the entry cannot be put back now, in the user's words; absent when it can.
    std::optional<std::string> reasonNotToRestore(const JournalEntry& entry) const;
    PutBackOutlook outlook(const JournalEntry& entry) const;

    /// As what an item at this path is to be judged.
    AllowedRoot rootForDestination(const std::string& path) const;

private:
    class Run;

    std::expected<std::vector<JournalEntry>, JournalError>
    restorable(const std::function<bool(const JournalEntry&)>& isWanted) const;
    std::expected<std::optional<std::uint32_t>, JournalError>
    newestPossible(const RestorableIndex& index) const;
    PutBackOutlook outlookInTrash(const JournalEntry& entry, PathResolver& paths) const;
    std::expected<Destination, PutBackOutlook> destinationOf(const JournalEntry& entry) const;
    AllowedRoot rootForDestination(const std::string& path, PathResolver& paths) const;
    bool isInTrashFolder(const std::string& path, PathResolver& paths) const;
    std::string canonicalOrAsWritten(std::string_view path, PathResolver& paths) const;

    SafetyPolicy policy_;
    std::shared_ptr<JournalStore> journal_;
    std::shared_ptr<RestoreOperations> restore_;
    std::vector<std::string> trashFolders_;
    Clock now_;
};

} // namespace orbel
