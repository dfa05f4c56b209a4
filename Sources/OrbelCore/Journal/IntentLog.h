#pragma once

#include "Journal/JournalError.h"
#include "Journal/MoveIntent.h"
#include "Util/FileDescriptor.h"

#include <expected>
#include <span>
#include <string>
#include <string_view>

namespace orbel {

class Barrier;

/// What one group is about to move, written beside the journal before it moves, so that a crash or a power
/// cut between a move and its line in the journal loses nothing: settleIntents() finds the item later and
/// writes the line.
///
/// Each log is a file of its own, "intents/{uuid}.jsonl" in the journal's folder (docs/journal-format.md),
/// locked for as long as the log lives, so that others leave it alone. One thread at a time.
class IntentLog {
public:
    static constexpr std::string_view folderName = "intents"; ///< beside the journal
    static constexpr const char* fileSuffix = ".jsonl";

    /// A log beside the journal at this path. Creates nothing on disk until the first intent.
    explicit IntentLog(const std::string& journalPath);

    IntentLog(IntentLog&&) noexcept = default;
    IntentLog& operator=(IntentLog&&) = delete;

    /// Leaves the file for settleIntents(), unless close() removed it.
    ~IntentLog() = default;

    /// Writes intents. The moves may begin only after that succeeded and the barrier was passed that the log
    /// has been added to.
    std::expected<void, JournalError> begin(std::span<const MoveIntent> intents);

    /// Adds the file and its name to what the barrier brings to the disk.
    void addTo(Barrier& barrier);

    /// Leaves the file as it is for settleIntents(): an outcome is not known, or not recorded. A later intent
    /// begins another one.
    void leave();

    /// The group ended and every outcome is known: removes the file, if there is one. Call it only when each
    /// item that was moved has its line in the journal. Another group may then begin in the same log.
    void close();

private:
    std::expected<void, JournalError> open();

    std::string folder_;
    std::string path_; ///< of the file, empty while there is none
    FileDescriptor file_;
    FileDescriptor newFolder_; ///< holds the file, whose name was not flushed yet
};

} // namespace orbel
