#include "Commands/RootScan.h"

#include "Commands/CommandOutput.h"
#include "Commands/Request.h"
#include "Scan/TreeScanner.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>

namespace orbel {

namespace {

[[noreturn]] void finishUnread(const std::string& root, const std::string& reason) {
    say(root + ": " + reason);
    finish("", ExitStatus::incomplete);
}

[[noreturn]] void finishUnmeasured(const std::string& root) {
    std::error_code error;
    static_cast<void>(std::filesystem::status(root, error));
    finishUnread(root, error ? error.message() : "could not be read");
}

} // namespace

ScanResult scanOfRoot(const Request& request, const ScanWatch& watch) {
    const ScanCancellation nobodyCancels;
    return TreeScanner::scan(request.operands.front(), std::nullopt,
                             watch.cancellation != nullptr ? *watch.cancellation : nobodyCancels,
                             watch.progress, {.paths = {}, .patterns = request.values(excludeOption.name)});
}

RootScan scanOrFileOfRoot(const Request& request, const ScanWatch& watch) {
    const auto& root = request.operands.front();
    auto kept = readScanFile(root);
    if (!kept)
        return {.result = scanOfRoot(request, watch), .keptOrigin = std::nullopt};
    if (!*kept)
        finishUnread(root, kept->error());
    if (request.has(excludeOption.name))
        finishWrongUsage("--exclude: the scan in " + root
                         + " was made before; measure anew to leave something out");
    auto& [tree, origin] = **kept;
    return {
        .result = {.tree = std::move(tree),
                   .cancelled = false,
                   .startedAt = std::chrono::floor<std::chrono::system_clock::duration>(origin.measuredAt),
                   .firstProgress = std::nullopt,
                   .duration = origin.duration},
        .keptOrigin = std::move(origin)};
}

RootScan scanOrFileOfExistingRoot(const Request& request, const ScanWatch& watch) {
    auto scan = scanOrFileOfRoot(request, watch);
    if (scan.result.tree.count() == 0)
        finishUnmeasured(request.operands.front());
    return scan;
}

ScanResult scanOfExistingRoot(const Request& request) {
    auto result = scanOfRoot(request);
    if (result.tree.count() == 0)
        finishUnmeasured(request.operands.front());
    return result;
}

void putExcluded(nlohmann::json& report, const FileTree& tree) {
    if (!tree.exclusions.isEmpty())
        report["excluded"] = {{"count", tree.excludedNodes.size()}, {"patterns", tree.exclusions.patterns}};
}

} // namespace orbel
