#include "Export/JournalExport.h"

#include "Export/JournalOutline.h"
#include "Export/JournalText.h"
#include "Journal/JournalLine.h"
#include "Journal/JournalReading.h"
#include "Journal/JournalStore.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace orbel {

namespace {

using Text = std::expected<std::string, JournalError>;

constexpr std::uint64_t bytesAtATime = 1024 * 1024;

/// Calls `take(entry)` for every entry among the lines at or after `since`.
template <class Take>
void forEachEntry(const Lines& lines, std::optional<Date> since, const Take& take) {
    forEachLine(lines.text(), [&](std::string_view line) {
        if (const auto entry = entryInLine(line); entry && (!since || entry->time >= *since))
            take(*entry);
    });
}

/// The sessions of an outline as text.
class SessionsText {
public:
    SessionsText(const JournalLines& lines, const JournalOutline& outline, std::optional<Date> since)
        : lines_(lines), outline_(outline), since_(since) {
        std::uint64_t bytes = 0;
        for (std::size_t i = 0; i < outline.stretches.size(); ++i) {
            if (bytes == 0)
                begins_.push_back(i);
            bytes += outline.stretches[i].range.end - outline.stretches[i].range.begin;
            if (bytes >= bytesAtATime)
                bytes = 0;
        }
        begins_.push_back(outline.stretches.size());
    }

    /// How many parts the text is made in.
    std::size_t partCount() const { return begins_.size() - 1; }

    Text part(std::size_t part) const {
        std::string text;
        for (auto i = begins_[part]; i < begins_[part + 1]; ++i) {
            const auto& stretch = outline_.stretches[i];
            const auto lines = lines_.linesIn(stretch.range);
            if (!lines)
                return std::unexpected(lines.error());
            if (i == 0 || outline_.stretches[i - 1].session != stretch.session)
                text += sessionHeading(outline_.times[stretch.session]);
            forEachEntry(*lines, since_, [&](const JournalEntry& entry) { text += entryMarkdown(entry); });
            if (i + 1 == outline_.stretches.size() || outline_.stretches[i + 1].session != stretch.session)
                text += '\n';
        }
        return text;
    }

private:
    const JournalLines& lines_;
    const JournalOutline& outline_;
    std::optional<Date> since_;
    std::vector<std::size_t> begins_; ///< of each part, the first of its stretches; then where the last ends
};

} // namespace

std::expected<void, JournalError> exportMarkdown(const JournalStore& journal, std::optional<Date> since,
                                                 const std::function<void(std::string_view)>& write) {
    const auto lines = journal.lines();
    if (!lines)
        return std::unexpected(lines.error());
    const auto outline = JournalOutline::of(*lines, since, bytesAtATime);
    if (!outline)
        return std::unexpected(outline.error());
    write(journalHeading);
    if (outline->times.empty())
        write(noEntriesText);
    const SessionsText sessions(*lines, *outline, since);
    std::expected<void, JournalError> outcome;
    mapInOrder(
        sessions.partCount(), [&](std::size_t part) { return sessions.part(part); },
        [&](Text text) {
            if (text)
                write(*text);
            else
                outcome = std::unexpected(std::move(text.error()));
            return outcome.has_value();
        });
    return outcome;
}

std::expected<void, JournalError> exportJson(const JournalStore& journal, std::optional<Date> since,
                                             const std::function<void(std::string_view)>& write) {
    const auto lines = journal.lines();
    if (!lines)
        return std::unexpected(lines.error());
    bool isEmpty = true;
    const auto isRead = lines->forEachPiece(
        [&](const Lines& piece) {
            std::string text;
            forEachEntry(piece, since, [&](const JournalEntry& entry) {
                text += (text.empty() ? "" : ",\n") + entryJson(entry);
            });
            return text;
        },
        [&](const std::string& text) {
            if (text.empty())
                return;
            write(std::exchange(isEmpty, false) ? "[\n" : ",\n");
            write(text);
        });
    if (isRead)
        write(isEmpty ? "[]" : "\n]");
    return isRead;
}

} // namespace orbel
