#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/GrowthReport.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Commands/ScanReport.h"
#include "Util/JsonText.h"
#include "Util/ParseNumber.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

constexpr std::int64_t defaultTop = 20;

std::size_t topIn(const Request& request) {
    const auto text = request.value("--top");
    const auto top = text ? parseInteger(*text) : std::nullopt;
    return static_cast<std::size_t>(std::max<std::int64_t>(top.value_or(defaultTop), 0));
}

void run(const Request& request) {
    const ScanResult result = scanOfRoot(request);
    auto report = scanReport(request.operands.front(), result, topIn(request));
    putExcluded(report, result.tree);
    int status = ExitStatus::done;
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

constexpr std::array options{CommandOption{.name = "--top", .takes = "N"}, CommandOption{.name = "--growth"},
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
        "on disk; a hard-linked file counts once, and other volumes are not entered. With --growth, a "
        "summary "
        "of the scan is kept for the next one, and the folders that grew most since the last one of the same "
        "ROOT with the same exclusions are added.",
    .run = run,
};

} // namespace orbel
