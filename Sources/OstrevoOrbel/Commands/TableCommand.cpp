#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/CountOption.h"
#include "Commands/Interruption.h"
#include "Commands/ListLimits.h"
#include "Commands/ProgressLine.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Commands/SizeTable.h"

#include <array>
#include <cstdio>

#include <unistd.h>

namespace orbel {

namespace {

RootScan watchedScan(const Request& request) {
    const auto form = TableForm::ofDescriptor(STDERR_FILENO);
    ProgressLine line([](std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); },
                      form.columns);
    ScanWatch watch{.cancellation = &stopScanOnInterrupt()};
    if (form.isTerminal)
        watch.progress = [&](const ScanProgress& progress) { line.show(progress); };
    auto scan = scanOfExisting(request.operands.front(), request, watch);
    line.erase();
    return scan;
}

void run(const Request& given) {
    auto request = given;
    if (request.operands.empty())
        request.operands.emplace_back(".");
    const auto limits =
        ListLimits::in(request, countOf(request, topOption.name).value_or(ListLimits::defaultTop));
    const auto scan = watchedScan(request);
    print(sizeTable(scan, limits, TableForm::ofDescriptor(STDOUT_FILENO)));
    std::fflush(stdout); // the words that follow come after the table where both go to one terminal
    const auto& tree = scan.result.tree;
    if (tree.unreadableCount > 0)
        say(std::to_string(tree.unreadableCount) + (tree.unreadableCount == 1 ? " entry" : " entries")
            + " could not be read");
    if (scan.result.cancelled)
        say("Stopped: the figures are partial, and only what was measured until then");
    finish("", scan.result.cancelled ? ExitStatus::incomplete : ExitStatus::done);
}

constexpr std::array options{topOption, depthOption, minBytesOption, excludeOption};

} // namespace

constinit const Command tableCommand{
    .name = "",
    .operands = "[ROOT]",
    .mostOperands = 1,
    .options = options,
    .help =
        "Measure ROOT, a folder, a file or a scan file, else the current folder, and print its N largest "
        "entries (20 unless given) as a table: size, share of ROOT, items and name. With --depth, so many "
        "levels as a tree, N entries in each folder; with --min-bytes, none that is smaller. What is left "
        "out is counted in a line of its own. Ctrl+C prints what was measured so far.",
    .run = run,
};

} // namespace orbel
