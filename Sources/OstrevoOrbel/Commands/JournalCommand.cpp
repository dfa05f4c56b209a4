#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Request.h"
#include "Commands/UserContext.h"
#include "Export/JournalExport.h"
#include "Util/Iso8601.h"

#include <array>
#include <optional>
#include <string>

namespace orbel {

namespace {

std::optional<Date> sinceIn(const Request& request) {
    const auto text = request.value("--since");
    if (!text)
        return std::nullopt;
    const auto date = parseIso8601(*text);
    const auto day = date ? date : parseIso8601(*text + "T00:00:00Z");
    if (!day)
        finishWrongUsage("--since takes a date in UTC, as 2025-01-31 or 2025-01-31T09:05:00Z");
    return day;
}

/// Prints the journal as `exportTo` writes it, and `end` behind it.
void run(const Request& request, decltype(exportJson)& exportTo, const std::string& end) {
    const auto since = sinceIn(request);
    const UserContext user;
    if (const auto& reason = user.policy().homeReason()) {
        say(*reason);
        finish("", ExitStatus::incomplete);
    }
    if (const auto written = exportTo(*user.settledJournal(), since, print); !written) {
        say(written.error().words);
        finish("", ExitStatus::incomplete);
    }
    finish(end);
}

constexpr std::array options{CommandOption{.name = "--since", .takes = "DATE"}};

} // namespace

constinit const Command journalJsonCommand{
    .name = "--journal-json",
    .options = options,
    .run = [](const Request& request) { run(request, exportJson, "\n"); },
};

constinit const Command journalMarkdownCommand{
    .name = "--journal-markdown",
    .options = options,
    .help = "Print the journal of all moves as JSON or as text, or what is in it from DATE on (2025-01-31 or "
            "2025-01-31T09:05:00Z, in UTC).",
    .run = [](const Request& request) { run(request, exportMarkdown, ""); },
};

} // namespace orbel
