#include "HeadlessCommands.h"

#include "AppsCommand.h"
#include "ChangeRequest.h"
#include "CommandOutput.h"
#include "DuplicatesCommand.h"
#include "GrowthReport.h"
#include "JournalCommand.h"
#include "LargeCommand.h"
#include "LaunchOptions.h"
#include "LeftoversCommand.h"
#include "MapCommand.h"
#include "PutBackCommand.h"
#include "Scan/TreeScanner.h"
#include "ScanReport.h"
#include "TidyCommand.h"
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

[[noreturn]] void finishReportWithGrowth(const std::string& root, std::span<const std::string> arguments) {
    const ScanCancellation nobodyCancels;
    const ScanResult result = TreeScanner::scan(root, std::nullopt, nobodyCancels, nullptr);
    auto report = scanReport(root, result, topIn(arguments));
    auto [growth, failure] = growthReport(result, UserContext());
    report["growth"] = std::move(growth);
    if (failure)
        say("The scan could not be kept to be compared with: " + *failure);
    finish(prettyJson(report) + "\n", failure ? ExitStatus::incomplete : ExitStatus::done);
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
    runLeftoversCommandIfRequested(arguments);
    runDuplicatesCommandIfRequested(arguments);
    if (const auto root = valueAfter(arguments, "--scan-json")) {
        if (contains(arguments, "--growth"))
            finishReportWithGrowth(*root, arguments);
        finish(scanReportText(*root, arguments));
    }
    runLargeCommandIfRequested(arguments);
    runTidyCommandIfRequested(arguments);
    runAppsCommandIfRequested(arguments);
    runMapCommandIfRequested(arguments);
    runJournalCommandIfRequested(arguments);
}

} // namespace orbel
