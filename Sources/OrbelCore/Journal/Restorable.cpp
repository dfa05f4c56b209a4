#include "Journal/Restorable.h"

#include "Journal/JournalLine.h"
#include "Journal/RecordedIds.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace orbel {

namespace {

/// Calls `keep(entry, range)` for each that can still be put back, on several threads, and `take` in file
/// order with what that returned, if anything.
template <class Keep, class Take>
std::expected<void, JournalError> forEachRestorable(const JournalLines& lines, const Keep& keep,
                                                    const Take& take) {
    using Kept = typename std::invoke_result_t<const Keep&, JournalEntry, LineRange>::value_type;
    const auto restored = restoredIds(lines);
    if (!restored)
        return std::unexpected(restored.error());
    return lines.forEachPiece(
        [&](const Lines& piece) {
            std::vector<Kept> all;
            forEachLine(piece.text(), [&](std::string_view line) {
                auto entry = entryInLine(line);
                if (!entry || entry->result != JournalEntry::Result::trashed || restored->contains(entry->id))
                    return;
                if (auto kept = keep(*std::move(entry), piece.rangeOf(line)))
                    all.push_back(*std::move(kept));
            });
            return all;
        },
        [&](std::vector<Kept> all) {
            for (auto& kept : all)
                take(std::move(kept));
        });
}

} // namespace

std::expected<std::vector<JournalEntry>, JournalError> readRestorable(const JournalLines& lines,
                                                                      const IsWanted& isWanted) {
    std::vector<JournalEntry> all;
    const auto isRead = forEachRestorable(
        lines,
        [&](JournalEntry entry, LineRange) {
            return isWanted(entry) ? std::optional(std::move(entry)) : std::nullopt;
        },
        [&](JournalEntry entry) { all.push_back(std::move(entry)); });
    if (!isRead)
        return std::unexpected(isRead.error());
    return all;
}

std::expected<RestorableIndex, JournalError> RestorableIndex::of(JournalLines lines) {
    struct Found {
        Date time;
        LineRange range;
        std::string sessionID;
    };
    RestorableIndex index(std::move(lines));
    std::unordered_map<std::string, std::uint32_t> sessions;
    const auto isRead = forEachRestorable(
        index.lines_,
        [](JournalEntry entry, LineRange range) {
            return std::optional(
                Found{.time = entry.time, .range = range, .sessionID = std::move(entry.sessionID)});
        },
        [&](Found found) {
            const auto next = static_cast<std::uint32_t>(sessions.size());
            const auto session = sessions.try_emplace(std::move(found.sessionID), next).first->second;
            index.newestFirst_.push_back({.time = found.time, .range = found.range, .session = session});
        });
    if (!isRead)
        return std::unexpected(isRead.error());
    // A line that was missing may stand after those of a newer session, so the times decide.
    std::ranges::sort(index.newestFirst_, std::ranges::greater(),
                      [](const Place& place) { return std::pair(place.time, place.range.begin); });
    return index;
}

std::expected<std::vector<JournalEntry>, JournalError>
RestorableIndex::entriesOf(std::uint32_t session) const {
    std::vector<Place> places;
    std::ranges::copy_if(newestFirst_, std::back_inserter(places),
                         [session](const Place& place) { return place.session == session; });
    std::ranges::sort(places, std::ranges::greater(), [](const Place& place) { return place.range.begin; });
    return entriesAt(places);
}

std::expected<std::vector<JournalEntry>, JournalError>
RestorableIndex::entriesAt(std::span<const Place> places) const {
    std::vector<JournalEntry> entries;
    for (const auto& place : places) {
        const auto lines = lines_.linesIn(place.range);
        if (!lines)
            return std::unexpected(lines.error());
        std::ranges::move(entriesIn(lines->text()), std::back_inserter(entries));
    }
    return entries;
}

} // namespace orbel
