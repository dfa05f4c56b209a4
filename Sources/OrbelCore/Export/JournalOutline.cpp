#include "Export/JournalOutline.h"

#include "Journal/JournalLine.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace orbel {

namespace {

/// A stretch in one piece of the file.
struct Found {
    std::string sessionID;
    Date time; ///< of its first entry
    LineRange range;
};

std::vector<Found> stretchesIn(const Lines& piece, std::optional<Date> since) {
    std::vector<Found> all;
    forEachLine(piece.text(), [&](std::string_view line) {
        auto entry = entryInLine(line);
        if (!entry || (since && entry->time < *since))
            return;
        const auto range = piece.rangeOf(line);
        if (!all.empty() && all.back().sessionID == entry->sessionID)
            all.back().range.end = range.end;
        else
            all.push_back({.sessionID = std::move(entry->sessionID), .time = entry->time, .range = range});
    });
    return all;
}

/// The place of each session in the order of their times; of two that began in the same second, the one that
/// comes first in the file.
std::vector<std::uint32_t> placesByTime(const std::vector<Date>& times) {
    std::vector<std::uint32_t> order;
    order.reserve(times.size());
    for (std::uint32_t session = 0; session < times.size(); ++session)
        order.push_back(session);
    std::ranges::stable_sort(order, {}, [&](std::uint32_t session) { return times[session]; });
    std::vector<std::uint32_t> places(times.size());
    for (std::uint32_t place = 0; place < order.size(); ++place)
        places[order[place]] = place;
    return places;
}

} // namespace

std::expected<JournalOutline, JournalError>
JournalOutline::of(const JournalLines& lines, std::optional<Date> since, std::uint64_t longestBytes) {
    JournalOutline outline;
    std::unordered_map<std::string, std::uint32_t> indexOf;
    const auto add = [&](Found found) {
        const auto next = static_cast<std::uint32_t>(outline.times.size());
        const auto [known, isNew] = indexOf.try_emplace(std::move(found.sessionID), next);
        if (isNew)
            outline.times.push_back(found.time);
        auto& all = outline.stretches;
        if (!all.empty() && all.back().session == known->second
            && all.back().range.end - all.back().range.begin < longestBytes)
            all.back().range.end = found.range.end;
        else
            all.push_back({.range = found.range, .session = known->second});
    };
    const auto isRead = lines.forEachPiece([&](const Lines& piece) { return stretchesIn(piece, since); },
                                           [&](std::vector<Found> all) {
                                               for (auto& found : all)
                                                   add(std::move(found));
                                           });
    if (!isRead)
        return std::unexpected(isRead.error());
    const auto places = placesByTime(outline.times);
    std::ranges::stable_sort(outline.stretches, {},
                             [&](const Stretch& stretch) { return places[stretch.session]; });
    return outline;
}

} // namespace orbel
