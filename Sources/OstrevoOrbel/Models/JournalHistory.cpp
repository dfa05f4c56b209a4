#include "Models/JournalHistory.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace orbel {

JournalHistory::JournalHistory(std::vector<JournalEntry> entries)
    : entries_(std::move(entries)), places_(entries_.size()) {
    using Result = JournalEntry::Result;
    std::unordered_map<std::string_view, Line> restoredBy;
    std::unordered_map<std::string_view, std::size_t> indexOf;
    for (Line line = 0; line < entries_.size(); ++line) {
        const auto& entry = entries_[line];
        if (entry.result == Result::restored && entry.refersTo)
            restoredBy[*entry.refersTo] = line;
        if (entry.result != Result::trashed && entry.result != Result::skipped)
            continue;
        const auto [known, isNew] = indexOf.try_emplace(entry.sessionID, sessions_.size());
        if (isNew)
            sessions_.push_back({.id = entry.sessionID, .time = entry.time, .items = {}});
        auto& session = sessions_[known->second];
        session.time = std::min(session.time, entry.time);
        session.items.push_back({.line = line});
    }
    // A line that was missing may have been written after those of a newer session, so the times decide; of
    // equal ones, the later line.
    std::ranges::reverse(sessions_);
    std::ranges::stable_sort(sessions_, std::ranges::greater(), &Session::time);
    for (std::uint32_t i = 0; i < sessions_.size(); ++i) {
        auto& session = sessions_[i];
        itemCount_ += session.items.size();
        for (std::uint32_t k = 0; k < session.items.size(); ++k) {
            auto& item = session.items[k];
            places_[item.line] = {.session = i, .item = k};
            const auto& entry = entries_[item.line];
            if (entry.result != Result::trashed)
                continue;
            ++session.moved;
            session.bytes += entry.bytes.value_or(0);
            if (const auto restored = restoredBy.find(entry.id); restored != restoredBy.end()) {
                item.restored = restored->second;
                ++session.restored;
            }
        }
    }
}

} // namespace orbel
