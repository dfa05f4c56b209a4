#include "Saved/ScanThinning.h"

#include <chrono>
#include <cstdint>
#include <set>
#include <utility>

namespace orbel {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

enum class Span : std::uint8_t { day, week, month, past };

/// The stretch of time that a scan stands for: the kind of it, and its number.
using Stretch = std::pair<Span, long>;

int monthNumber(sys_days day) {
    const std::chrono::year_month_day date(day);
    constexpr int monthsPerYear = 12;
    return static_cast<int>(date.year()) * monthsPerYear + static_cast<int>(unsigned{date.month()});
}

Stretch stretchOf(sys_days day, sys_days today) {
    constexpr int daysPerWeek = 7;
    constexpr int mondayBefore1970 = 3; // 1 January 1970 was a Thursday
    const long number = day.time_since_epoch().count();
    if (today - day < days(daysPerWeek))
        return {Span::day, number};
    if (today - day < days(4 * daysPerWeek))
        return {Span::week, (number + mondayBefore1970) / daysPerWeek};
    const int month = monthNumber(day);
    return {monthNumber(today) - month < 12 ? Span::month : Span::past, month};
}

} // namespace

std::vector<std::size_t> expiredScans(std::span<const Date> newestFirst, Date now) {
    // So that the newest one can be compared with the one before it, also on the same day.
    constexpr std::size_t alwaysKept = 2;
    const auto today = std::chrono::floor<days>(now);
    std::set<Stretch> served;
    std::vector<std::size_t> expired;
    for (std::size_t i = 0; i < newestFirst.size(); ++i) {
        const auto stretch = stretchOf(std::chrono::floor<days>(newestFirst[i]), today);
        const bool isFirst = served.insert(stretch).second;
        if (i >= alwaysKept && (!isFirst || stretch.first == Span::past))
            expired.push_back(i);
    }
    return expired;
}

} // namespace orbel
