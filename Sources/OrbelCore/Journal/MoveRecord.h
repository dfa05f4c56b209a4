#pragma once

#include "Journal/Barrier.h"
#include "Journal/IntentLog.h"
#include "Journal/JournalEntry.h"
#include "Journal/JournalError.h"
#include "Journal/MoveIntent.h"

#include <chrono>
#include <cstddef>
#include <expected>
#include <span>
#include <string>

namespace orbel {

class JournalStore;

/// What a group of moves writes down, so that a crash or a power cut at any moment loses nothing and
/// leaves nothing unrecorded:
///
///   begin, intend, seal: nothing may have moved yet;
///   the moves, each added to barrier();
///   record: their lines, as often as wanted; only then they count as made.
///
/// Where one flush covers all of it, a group takes two: in seal() and in record(). One thread at a time;
/// while a group is under way, the next one may begin.
class MoveRecord {
public:
    /// How many moves a group has at most: enough to make its flushes cheap, and few enough for what is kept
    /// open for two groups.
    static std::size_t mostMoves();

    /// After so much work the lines of what has moved are to be recorded, if only to show that it goes on.
    static constexpr std::chrono::milliseconds longestUnrecorded{500};

    /// Nothing is created on disk before begin(). `journal` must live as long as this.
    explicit MoveRecord(JournalStore& journal);

    /// Ends the group: each of its moves is recorded, or known not to have been made. Leaves no intents
    /// behind unless keepIntents() was called.
    ~MoveRecord();
    MoveRecord(const MoveRecord&) = delete;
    MoveRecord& operator=(const MoveRecord&) = delete;

    /// Begins a group: proves that the journal can take so many lines. Those of a group before that is under
    /// way count too.
    std::expected<void, JournalError> begin(std::size_t lines);

    /// Writes what is about to move. After an error no move of the group may be made; the same for seal().
    std::expected<void, JournalError> intend(std::span<const MoveIntent> intents);

    /// Waits until the intents, and all that was added to the barrier, is on the disk.
    std::expected<void, JournalError> seal();

    /// Of the group: what is written for the moves, and the moves themselves, are to be added to it.
    Barrier& barrier() { return barrier_; }

    /// Appends the lines and waits until they and the moves are on the disk. After an error the intents of
    /// what was moved must be kept.
    std::expected<void, JournalError> record(std::span<const JournalEntry> lines);

    /// The outcome of some move is not known, or a part of it is left to be done: keeps the
    /// intents for settleIntents().
    void keepIntents() { mustKeepIntents_ = true; }

private:
    JournalStore& journal_;
    IntentLog intents_;
    Barrier barrier_;
    bool mustKeepIntents_ = false;
};

} // namespace orbel
