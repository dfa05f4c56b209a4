#pragma once

#include <chrono>
#include <cstdint>
#include <QString>
#include <string_view>

namespace orbel {

// Names from the disk and what the core says, as the window shows them.

/// Bytes of the disk or the core as they stand among other words: nothing hidden, and right-to-left letters
/// kept apart (Util/ShownText.h). Every name and path that is shown goes through here.
QString textOf(std::string_view bytes);

/// The same in two steps, for a painter that cuts a name short in between.
QString visibleTextOf(std::string_view bytes);
QString isolated(const QString& visible);

/// What `textOf` gave, without what keeps it apart: for comparing with what is typed.
QString withoutIsolates(QString text);

// Figures on the screen follow the locale of the desktop; the C locale stands for English.

/// "1,284,301".
QString countText(std::uint64_t count);

/// "8.4", with so many digits behind the decimal sign.
QString decimalText(double value, int decimals);

/// The number with its noun: "1 entry", "1,284,301 entries".
QString countOf(std::uint64_t count, const QString& one, const QString& many);

/// "8.4 s", from a minute on "1 min 12 s".
QString durationText(double seconds);

// Days and times of day, in the local time of this computer.

/// "today at 09:12", "yesterday at 14:02", "on 14 November at 17:40", with the year where it is another one.
QString whenText(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now);

/// "today at 09:26", "18 November 2026 at 21:04".
QString dateText(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now);

/// "2 October 2025 at 17:40".
QString dayAndClockText(std::chrono::sys_seconds time);

/// "3 March 2025".
QString dayText(std::chrono::sys_time<std::chrono::microseconds> time);

/// "today at 09:12", "14 November", of another year "14 November 2025".
QString recentDayText(std::chrono::sys_time<std::chrono::microseconds> time,
                      std::chrono::system_clock::time_point now);

/// "09:12:45".
QString clockText(std::chrono::sys_time<std::chrono::microseconds> time);

} // namespace orbel
