#include "Export/ReportRenderer.h"

#include "Delete/DeletionReportJson.h"
#include "Export/JournalText.h"
#include "Safety/ByteFormat.h"
#include "Util/JsonText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>
#include <vector>

namespace orbel {

namespace {

/// A document made line by line.
class Lines {
public:
    void add(std::string_view line) { (text_ += line) += '\n'; }

    void addItem(const std::string& words, const std::string& path) { text_ += listItem(words, path); }

    std::string text() const { return lossyUtf8(text_); }

private:
    std::string text_;
};

void addHeading(Lines& lines, std::string_view title, std::size_t count) {
    lines.add("");
    lines.add("## " + std::string(title) + " (" + std::to_string(count) + ")");
    lines.add("");
    if (count == 0)
        lines.add("_Nothing._");
}

using Session = std::vector<const JournalEntry*>;

std::vector<Session> sessionsOf(std::span<const JournalEntry> entries) {
    std::vector<Session> sessions;
    std::map<std::string_view, std::size_t> indexOf;
    for (const auto& entry : entries) {
        const auto [known, isNew] = indexOf.try_emplace(entry.sessionID, sessions.size());
        if (isNew)
            sessions.emplace_back();
        sessions[known->second].push_back(&entry);
    }
    // Of two that began in the same second, the one that was given first.
    std::ranges::sort(sessions, {}, [](const Session& session) {
        return std::pair(session.front()->time, session.front());
    });
    return sessions;
}

} // namespace

std::string ReportRenderer::markdown(const DeletionReport& report) {
    Lines lines;
    lines.add("# Ostrevo Vanto — Deletion report");
    lines.add("");
    lines.add("- Date: " + iso8601(report.finishedAt));
    lines.add("- " + report.headline());
    lines.add("- " + std::string(DeletionReport::trashNote));
    if (report.cancelled)
        lines.add("- Cancelled before all items ran.");
    if (report.stoppedForMismatch)
        lines.add("- Stopped: an item in the Trash did not match the approved item.");
    if (report.journalFailed)
        lines.add("- Stopped: the journal could not be written.");
    if (report.journalFailure)
        lines.add("- Journal: " + *report.journalFailure);
    if (report.uncheckedProcesses >= 1)
        lines.add("- Could not check " + std::to_string(report.uncheckedProcesses)
                  + " system processes for open files.");
    addHeading(lines, "Moved to Trash", report.moved.size());
    for (const auto& item : report.moved)
        lines.addItem(item.title + " — " + ByteFormat::string(item.bytes)
                          + (item.note ? " (" + *item.note + ")" : ""),
                      item.path);
    addHeading(lines, "Skipped", report.skipped.size());
    for (const auto& item : report.skipped)
        lines.addItem(item.title + " — " + item.reason, item.path);
    return lines.text();
}

std::string ReportRenderer::markdown(std::span<const JournalEntry> entries) {
    std::string text(journalHeading);
    if (entries.empty())
        text += noEntriesText;
    for (const auto& session : sessionsOf(entries)) {
        text += sessionHeading(session.front()->time);
        for (const JournalEntry* entry : session)
            text += entryMarkdown(*entry);
        text += '\n';
    }
    return text;
}

std::string ReportRenderer::json(const DeletionReport& report) {
    return prettyJson(report);
}

std::string ReportRenderer::json(std::span<const JournalEntry> entries) {
    std::string text;
    for (const auto& entry : entries)
        text += (text.empty() ? "[\n" : ",\n") + entryJson(entry);
    return text + (text.empty() ? "[]" : "\n]");
}

} // namespace orbel
