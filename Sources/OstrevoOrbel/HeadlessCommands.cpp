#include "HeadlessCommands.h"

#include "AppsCommand.h"
#include "ChangeRequest.h"
#include "CommandOutput.h"
#include "JournalCommand.h"
#include "LaunchOptions.h"
#include "LeftoversCommand.h"
#include "MapCommand.h"
#include "PutBackCommand.h"
#include "Scan/TreeScanner.h"
#include "ScanReport.h"
#include "TrashCommand.h"
#include "Util/JsonText.h"
#include "Util/ParseNumber.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

constexpr std::int64_t defaultTop = 20;

std::size_t topIn(std::span<const std::string> arguments) {
    const auto text = valueAfter(arguments, "--top");
    const auto top = text ? parseInteger(*text) : std::nullopt;
    return static_cast<std::size_t>(std::max<std::int64_t>(top.value_or(defaultTop), 0));
}

} // namespace

std::string HeadlessCommands::scanReportText(const std::string& root,
                                             std::span<const std::string> arguments) {
    const ScanCancellation nobodyCancels;
    const ScanResult result = TreeScanner::scan(root, std::nullopt, nobodyCancels, nullptr);
    return prettyJson(scanReport(root, result, topIn(arguments))) + "\n";
}

void HeadlessCommands::runIfRequested(std::span<const std::string> arguments) {
    const auto change = changeRequestIn(arguments);
    if (!change)
        finishWrongUsage(change.error());
    if (const auto& request = *change) {
        if (request->kind == ChangeRequest::Kind::trash)
            runTrashCommand(*request);
        runPutBackCommand(*request);
    }
    runMapCommandIfRequested(arguments);
    runLeftoversCommandIfRequested(arguments);
    runAppsCommandIfRequested(arguments);
    if (const auto root = valueAfter(arguments, "--scan-json"))
        finish(scanReportText(*root, arguments));
    runJournalCommandIfRequested(arguments);
}

} // namespace orbel
