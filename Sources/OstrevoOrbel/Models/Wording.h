#pragma once

#include <chrono>
#include <cstdint>
#include <QString>
#include <string_view>

namespace orbel {

// How the window writes what is not a size. The same in every locale, as sizes are.

/// Bytes of the disk or the core as text; what is not valid UTF-8 is replaced.
QString textOf(std::string_view bytes);

/// "1,284,301".
QString countText(std::uint64_t count);

/// The number with its noun: "1 entry", "1,284,301 entries".
QString countOf(std::uint64_t count, const QString& one, const QString& many);

/// "8.4 s", from a minute on "1 min 12 s".
QString durationText(double seconds);

/// "today at 09:12", "on 14 November at 17:40", in the local time of this computer.
QString whenText(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now);

/// "today at 09:26", "18 November 2026 at 21:04", in the local time of this computer.
QString dateText(std::chrono::system_clock::time_point time, std::chrono::system_clock::time_point now);

/// "3 March 2025", in the local time of this computer.
QString dayText(std::chrono::sys_time<std::chrono::microseconds> time);

} // namespace orbel
