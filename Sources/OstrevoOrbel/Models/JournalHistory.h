#pragma once

#include "Journal/JournalEntry.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orbel {

/// The journal as people read it: its sessions, newest first, and in each what was moved or passed over and
/// whether it came back. Made of the journal's lines and never changed afterwards, so threads may share it.
class JournalHistory {
public:
    /// A line of the journal, by its place in the file.
    using Line = std::uint32_t;

    struct Item {
        Line line = 0;                              ///< that says "trashed" or "skipped"
        std::optional<Line> restored{std::nullopt}; ///< that says that it is back
    };
    struct Session {
        std::string_view id;
        Date time;               ///< of its first item
        std::vector<Item> items; ///< in the order of the moves
        std::size_t moved = 0;
        std::size_t restored = 0;
        std::uint64_t bytes = 0; ///< of what was moved
    };

    JournalHistory() = default;
    /// `entries` in file order.
    explicit JournalHistory(std::vector<JournalEntry> entries);
    JournalHistory(const JournalHistory&) = delete;
    JournalHistory& operator=(const JournalHistory&) = delete;

    const std::vector<JournalEntry>& entries() const { return entries_; }
    const JournalEntry& entry(Line line) const { return entries_[line]; }
    const std::vector<Session>& sessions() const { return sessions_; }
    /// How many items all sessions have.
    std::size_t itemCount() const { return itemCount_; }

    /// Where the item of a line stands; only for lines that are items'.
    struct Place {
        std::uint32_t session = 0;
        std::uint32_t item = 0;
    };
    Place placeOf(Line line) const { return places_[line]; }
    const Item& item(Line line) const { return sessions_[places_[line].session].items[places_[line].item]; }

private:
    std::vector<JournalEntry> entries_;
    std::vector<Session> sessions_;
    std::vector<Place> places_; ///< by line
    std::size_t itemCount_ = 0;
};

} // namespace orbel
