#pragma once

#include <string>

namespace orbel {

/// Why the journal, or the record of intents beside it, could not be written.
struct JournalError {
    std::string words; ///< what failed, with the system's words
    /// Whether the record may be in the file nevertheless: it was written but could not be synchronised,
    /// or all but its line feed was written. Never try again then: a second record of one outcome could
    /// follow the first.
    bool mayBeRecorded = false;

    bool operator==(const JournalError&) const = default;
};

} // namespace orbel
