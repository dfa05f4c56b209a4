#pragma once

#include "Delete/DeletionReport.h"
#include "Journal/JournalEntry.h"

#include <span>
#include <string>

namespace orbel {

/// A deletion report, or the journal, as text to be exported: valid UTF-8, with replacement
/// characters where a name on the disk was not. Titles, notes, reasons and paths are not escaped for
/// Markdown. Not instantiable.
struct ReportRenderer {
    ReportRenderer() = delete;

    static std::string markdown(const DeletionReport& report);
    /// Grouped by session in the order of their first entries' times; the entries of a session in
    /// the given order.
    static std::string markdown(std::span<const JournalEntry> entries);

    /// For people and scripts: indented, keys sorted, no line feed at the end.
    static std::string json(const DeletionReport& report);
    static std::string json(std::span<const JournalEntry> entries);
};

} // namespace orbel
