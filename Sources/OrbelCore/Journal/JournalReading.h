#pragma once

#include "Journal/JournalEntry.h"

#include <cstdint>
#include <expected>
#include <string_view>
#include <vector>

namespace orbel {

/// The entries in these lines, in their order. Empty lines, lines that are no entry and a last line without a
/// line feed that is none are left out.
std::vector<JournalEntry> entriesIn(std::string_view lines);

/// The entries in the first `length` bytes of an open file, read in pieces and on as many threads as there
/// are processors, so that beside the entries little more than those pieces is in memory. Absent when a read
/// fails.
std::expected<std::vector<JournalEntry>, int> readEntries(int file, std::uint64_t length,
                                                          std::uint64_t pieceBytes = 1024 * 1024);

} // namespace orbel
