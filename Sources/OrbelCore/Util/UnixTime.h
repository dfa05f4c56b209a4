#pragma once

#include <cstdint>
#include <limits>

namespace orbel {

/// A moment as nanoseconds since 1970. File systems keep years that this count cannot reach (before 1678,
/// after 2261); such a moment is clamped to the nearest one.
constexpr std::int64_t nanosSince1970(std::int64_t seconds, std::int64_t nanos) {
    constexpr std::int64_t nanosPerSecond = 1'000'000'000;
    std::int64_t total = 0;
    if (__builtin_mul_overflow(seconds, nanosPerSecond, &total)
        || __builtin_add_overflow(total, nanos, &total))
        return seconds < 0 ? std::numeric_limits<std::int64_t>::min()
                           : std::numeric_limits<std::int64_t>::max();
    return total;
}

} // namespace orbel
