#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Export/NcduExport.h"

#include <array>
#include <string>

namespace orbel {

namespace {

void run(const Request& request) {
    const auto& file = request.operands.back();
    const auto scan = scanOfExistingRoot(request);
    const auto measuredAt = std::chrono::floor<Date::duration>(scan.result.startedAt);
    if (file == "-") {
        exportAsNcdu(scan.result.tree, measuredAt, print);
        finish("");
    }
    std::string text;
    exportAsNcdu(scan.result.tree, measuredAt, [&](std::string_view piece) { text += piece; });
    finishInto(file, text);
}

constexpr std::array options{excludeOption};

} // namespace

constinit const Command ncduCommand{
    .name = "--export-ncdu",
    .operands = "ROOT FILE",
    .fewestOperands = 2,
    .options = options,
    .help = "Measure ROOT, or take the scan in the file ROOT, and write all that is in it into FILE in the "
            "form that "
            "ncdu exports (1.2) and many programs read; \"-\" is standard output.",
    .run = run,
};

} // namespace orbel
