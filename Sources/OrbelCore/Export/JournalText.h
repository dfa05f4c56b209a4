#pragma once

#include "Journal/JournalEntry.h"

#include <string>
#include <string_view>

namespace orbel {

// The parts that an exported journal is put together from. All are valid UTF-8, with replacement characters
// where a name was not.

/// An item of a Markdown list with the path below it, held together by a hard line break.
std::string listItem(std::string_view words, std::string_view path);

inline constexpr std::string_view journalHeading = "# Ostrevo Vanto — Journal\n\n";
inline constexpr std::string_view noEntriesText = "_No entries._\n";

/// What stands above the entries of a session in Markdown; an empty line ends them.
std::string sessionHeading(Date time);
std::string entryMarkdown(const JournalEntry& entry);

/// An entry as it stands in a JSON list, without the comma.
std::string entryJson(const JournalEntry& entry);

} // namespace orbel
