#include "Util/Iso8601.h"

#include <algorithm>
#include <cstddef>

namespace orbel {

namespace {

using namespace std::chrono;

constexpr std::string_view form = "0000-00-00T00:00:00Z"; // a zero stands for any digit

constexpr Date firstDate = sys_days(year(0) / January / 1);
constexpr Date endOfDates = sys_days(year(9999) / December / 31) + days(1);

void putNumber(std::string& text, std::size_t offset, std::size_t digits, int number) {
    for (std::size_t i = offset + digits; i-- > offset; number /= 10)
        text[i] = static_cast<char>('0' + number % 10);
}

int numberAt(std::string_view text, std::size_t offset, std::size_t digits) {
    int number = 0;
    for (const char digit : text.substr(offset, digits))
        number = number * 10 + (digit - '0');
    return number;
}

bool hasForm(std::string_view text) {
    return std::ranges::equal(text, form, [](char given, char wanted) {
        return wanted == '0' ? given >= '0' && given <= '9' : given == wanted;
    });
}

} // namespace

Date currentDate() {
    return floor<microseconds>(system_clock::now());
}

std::string iso8601(Date date) {
    const auto second = floor<seconds>(std::clamp(date, firstDate, endOfDates - seconds(1)));
    const auto midnight = floor<days>(second);
    const year_month_day day(midnight);
    const hh_mm_ss time(second - midnight);
    std::string text(form);
    putNumber(text, 0, 4, static_cast<int>(day.year()));
    putNumber(text, 5, 2, static_cast<int>(static_cast<unsigned>(day.month())));
    putNumber(text, 8, 2, static_cast<int>(static_cast<unsigned>(day.day())));
    putNumber(text, 11, 2, static_cast<int>(time.hours().count()));
    putNumber(text, 14, 2, static_cast<int>(time.minutes().count()));
    putNumber(text, 17, 2, static_cast<int>(time.seconds().count()));
    return text;
}

std::optional<Date> parseIso8601(std::string_view text) {
    if (!hasForm(text))
        return std::nullopt;
    const year_month_day day(year(numberAt(text, 0, 4)), month(static_cast<unsigned>(numberAt(text, 5, 2))),
                             std::chrono::day(static_cast<unsigned>(numberAt(text, 8, 2))));
    const int hour = numberAt(text, 11, 2);
    const int minute = numberAt(text, 14, 2);
    const int second = numberAt(text, 17, 2);
    if (!day.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    return sys_days(day) + hours(hour) + minutes(minute) + seconds(second);
}

} // namespace orbel
