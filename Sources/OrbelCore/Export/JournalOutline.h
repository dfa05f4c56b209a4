#pragma once

#include "Journal/JournalReading.h"
#include "Util/Iso8601.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <vector>

namespace orbel {

/// Lines of one session that stand together in the journal, apart from such as are not wanted.
struct Stretch {
    LineRange range;
    std::uint32_t session = 0; ///< an index
};

/// In which order sessions are shown, and where their lines are.
struct JournalOutline {
    std::vector<Date> times;        ///< of the first wanted entry of each session, by its index
    std::vector<Stretch> stretches; ///< session after session, by that time; those of a session in file order

    /// Reads the whole file. Wanted are entries at or after `since`. No stretch is much
    /// longer than `longestBytes`.
    static std::expected<JournalOutline, JournalError>
    of(const JournalLines& lines, std::optional<Date> since, std::uint64_t longestBytes);
};

} // namespace orbel
