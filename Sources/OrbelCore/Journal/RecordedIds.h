#pragma once

#include "Journal/JournalReading.h"

#include <expected>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace orbel {

/// Which of some ids the journal holds.
struct RecordedIds {
    std::unordered_map<std::string, JournalEntry::Result> outcomes; ///< by the ids of lines
    std::unordered_set<std::string> restored;                       ///< what `restored` lines refer to

    bool operator==(const RecordedIds&) const = default;
};

// Lines are searched as bytes, several times faster, and only those that may match are parsed as entries.

/// `ids` as those of lines, `referredTo` as what a `restored` line refers to.
std::expected<RecordedIds, JournalError> recordedIds(const JournalLines& lines,
                                                     std::span<const std::string> ids,
                                                     std::span<const std::string> referredTo);

/// All that `restored` lines refer to.
std::expected<std::unordered_set<std::string>, JournalError> restoredIds(const JournalLines& lines);

} // namespace orbel
