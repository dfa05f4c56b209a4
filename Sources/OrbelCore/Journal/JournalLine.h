#pragma once

#include "Journal/JournalEntry.h"
#include "Journal/JournalError.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// The line of an entry, without its line feed: one JSON object, keys sorted by their bytes, no blanks,
/// slashes as they are. What a person reads gets replacement characters where it is not valid UTF-8. An error
/// for an item that was moved or put back under paths that are not: a line with other paths could not bring
/// it back.
std::expected<std::string, JournalError> journalLine(const JournalEntry& entry);

/// The entry that a line holds; absent for anything else: malformed JSON, a missing key, a value of another
/// type, an unknown name of a module, root or result, a bad date. Further keys are passed over, and null
/// counts as absent where a field may be.
std::optional<JournalEntry> entryInLine(std::string_view line);

/// The same, by the JSON library alone: it decides about lines that are not of the plain kind (PlainLine.h).
std::optional<JournalEntry> entryByLibrary(std::string_view line);

} // namespace orbel
