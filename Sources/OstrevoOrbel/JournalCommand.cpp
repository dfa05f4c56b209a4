#include "JournalCommand.h"

#include "CommandOutput.h"
#include "Export/ReportRenderer.h"
#include "LaunchOptions.h"
#include "UserContext.h"
#include "Util/Iso8601.h"

#include <vector>

namespace orbel {

namespace {

std::optional<Date> sinceIn(std::span<const std::string> arguments) {
    if (!contains(arguments, "--since"))
        return std::nullopt;
    const auto text = valueAfter(arguments, "--since").value_or("");
    const auto date = parseIso8601(text);
    const auto day = date ? date : parseIso8601(text + "T00:00:00Z");
    if (!day)
        finishWrongUsage("--since takes a date in UTC, as 2025-01-31 or 2025-01-31T09:05:00Z");
    return day;
}

} // namespace

void runJournalCommandIfRequested(std::span<const std::string> arguments) {
    const bool isJson = contains(arguments, "--journal-json");
    if (!isJson && !contains(arguments, "--journal-markdown"))
        return;
    const auto since = sinceIn(arguments);
    const UserContext user;
    if (const auto& reason = user.policy().homeReason()) {
        say(*reason);
        finish("", ExitStatus::incomplete);
    }
    auto entries = user.settledJournal()->read();
    if (!entries) {
        say(entries.error().words);
        finish("", ExitStatus::incomplete);
    }
    if (since)
        std::erase_if(*entries, [&](const JournalEntry& entry) { return entry.time < *since; });
    finish(isJson ? ReportRenderer::json(*entries) + "\n" : ReportRenderer::markdown(*entries));
}

} // namespace orbel
