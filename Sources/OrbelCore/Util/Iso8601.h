#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// A moment in UTC, in microseconds since 1970: fine enough for any clock, and wide enough for every year
/// that can be written down, which the nanoseconds of the system clock are not.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// The moment of the call, by the system's clock.
Date currentDate();

/// "2025-01-31T09:05:00Z": date and time in UTC, cut to the whole second (never rounded up). Years run from
/// 0000 to 9999; a date beyond reads as the first or last second of these.
std::string iso8601(Date date);

/// Reads exactly what iso8601() writes: four digits of the year, "T" and "Z" in upper case, no fraction, no
/// other offset, and a day that its month has. Absent for any other text.
std::optional<Date> parseIso8601(std::string_view text);

} // namespace orbel
