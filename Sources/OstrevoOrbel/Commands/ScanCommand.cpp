#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/GrowthReport.h"
#include "Commands/ListLimits.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Commands/ScanReport.h"
#include "Platform/ReplaceFile.h"
#include "Util/JsonText.h"
#include "Util/ParseNumber.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

std::size_t topIn(const Request& request) {
    const auto text = request.value(topOption.name);
    const auto top = text ? parseInteger(*text) : std::nullopt;
    return static_cast<std::size_t>(std::max<std::int64_t>(top.value_or(ListLimits::defaultTop), 0));
}

/// Keeps the scan in a file. On standard output it takes the place of the report.
int save(const RootScan& scan, const std::string& file) {
    const auto bytes =
        scanFileBytes(scan.result.tree, scan.keptOrigin ? *scan.keptOrigin : ScanOrigin::ofHere(scan.result));
    if (file == "-")
        finish(bytes);
    const auto written = replaceFile(file, bytes, FileAccess::ownerOnly);
    if (!written)
        say(file + ": " + written.error());
    return written ? ExitStatus::done : ExitStatus::incomplete;
}

void run(const Request& request) {
    const auto limits = ListLimits::in(request, topIn(request));
    const auto file = request.value("--save");
    const auto scan = file ? scanOfExistingRoot(request) : scanOfRoot(request);
    const ScanResult& result = scan.result;
    if (scan.keptOrigin && request.has("--growth"))
        finishWrongUsage("--growth compares a scan that is made now, not one in a file");
    int status = file ? save(scan, *file) : ExitStatus::done;
    auto report = scanReport(request.operands.front(), scan, limits, request.has(depthOption.name));
    putExcluded(report, result.tree);
    if (request.has("--growth")) {
        auto [growth, failure] = growthReport(result, UserContext());
        report["growth"] = std::move(growth);
        if (failure) {
            say("The scan could not be kept to be compared with: " + *failure);
            status = ExitStatus::incomplete;
        }
    }
    finish(prettyJson(report) + "\n", status);
}

constexpr std::array options{topOption,
                             depthOption,
                             minBytesOption,
                             CommandOption{.name = "--growth"},
                             CommandOption{.name = "--save", .takes = "FILE"},
                             excludeOption};

} // namespace

constinit const Command scanCommand{
    .name = "--scan-json",
    .operands = "ROOT",
    .fewestOperands = 1,
    .options = options,
    .isLenient = true,
    .help =
        "Measure ROOT, a folder or a file, and print a report as JSON: totals, what could not be read, the "
        "figures of the volume and the N largest entries directly in ROOT (20 unless given). Sizes are bytes "
        "on disk; a hard-linked file counts once, and other volumes are not entered. With --depth, folders "
        "have their own entries, so many levels of them and N in each; with --min-bytes, none that is "
        "smaller. "
        "With --growth, the scan is kept by itself for the next one, and the folders that grew most since "
        "the "
        "last one of the same "
        "ROOT with the same exclusions are added. With --save, the whole scan is kept in FILE, which can be "
        "given in place of ROOT later, and on another machine; with \"-\" it is written to standard output "
        "in "
        "place of the report. An export of ncdu (also compressed) can be given in place of ROOT likewise.",
    .run = run,
};

} // namespace orbel
