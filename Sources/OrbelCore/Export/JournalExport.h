#pragma once

#include "Journal/JournalError.h"
#include "Util/Iso8601.h"

#include <expected>
#include <functional>
#include <optional>
#include <string_view>

namespace orbel {

class JournalStore;

// The journal as ReportRenderer renders its entries, made from the file in pieces and given to `write` in
// order, on the calling thread. Absent `since`: all entries, else those at or after it. An error as
// JournalStore::read() has it; what was written until then is a beginning.

/// Reads the file twice: the order of the sessions is known only at its end. Beside a few pieces of it, in
/// memory are about 150 bytes for each session and 24 for each group of lines of one session that stand
/// together in the file.
std::expected<void, JournalError> exportMarkdown(const JournalStore& journal, std::optional<Date> since,
                                                 const std::function<void(std::string_view)>& write);

/// Has a few pieces of the file in memory.
std::expected<void, JournalError> exportJson(const JournalStore& journal, std::optional<Date> since,
                                             const std::function<void(std::string_view)>& write);

} // namespace orbel
