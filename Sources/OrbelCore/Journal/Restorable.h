#pragma once

#include "Journal/JournalReading.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace orbel {

// An entry can still be put back when it says `trashed` and no `restored` line refers to it.

using IsWanted = std::function<bool(const JournalEntry&)>;

/// Those that can still be put back and are wanted, in file order. Several threads ask `isWanted`.
std::expected<std::vector<JournalEntry>, JournalError> readRestorable(const JournalLines& lines,
                                                                      const IsWanted& isWanted);

/// Where in the journal's file all stand that can still be put back: 40 bytes for each, and what each session
/// is called. The entries themselves are read when they are needed. Threads may share it.
class RestorableIndex {
public:
    struct Place {
        Date time;
        LineRange range;
        std::uint32_t session = 0; ///< the same for all of one session
    };

    static std::expected<RestorableIndex, JournalError> of(JournalLines lines);

    /// Newest first, by time; of equal ones, the later line first.
    std::span<const Place> newestFirst() const { return newestFirst_; }

    /// The entries of one session, the last line first.
    std::expected<std::vector<JournalEntry>, JournalError> entriesOf(std::uint32_t session) const;

    /// The entries at these places, in their order.
    std::expected<std::vector<JournalEntry>, JournalError> entriesAt(std::span<const Place> places) const;

private:
    explicit RestorableIndex(JournalLines lines) : lines_(std::move(lines)) {}

    JournalLines lines_;
    std::vector<Place> newestFirst_;
};

} // namespace orbel
