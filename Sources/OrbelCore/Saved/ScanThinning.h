#pragma once

#include "Util/Iso8601.h"

#include <cstddef>
#include <span>
#include <vector>

namespace orbel {

/// Which of the kept scans of one root have served their time. Stays are the two newest, the newest of each
/// of the last seven days, of each week of the last four, and of each month of the last twelve; days begin at
/// midnight UTC, weeks on Monday.
///
/// `newestFirst` is when they were made, `now` the moment of the question; the result are indices into it,
/// ascending. What is thinned day by day leaves the same scans as what is thinned once.
std::vector<std::size_t> expiredScans(std::span<const Date> newestFirst, Date now);

} // namespace orbel
