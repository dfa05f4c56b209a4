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

ScanResult scanOf(const std::string& root, const Request& request) {
    const ScanCancellation nobodyCancels;
    return TreeScanner::scan(root, std::nullopt, nobodyCancels, nullptr,
                             {.paths = {}, .patterns = request.values(excludeOption.name)});
}

} // namespace

ScanResult scanOfRoot(const Request& request) {
    return scanOf(request.operands.front(), request);
}

RootScan RootScan::ofKept(KeptScan kept) {
    auto& [tree, origin] = kept;
    return {
        .result = {.tree = std::move(tree),
                   .cancelled = false,
                   .startedAt = std::chrono::floor<std::chrono::system_clock::duration>(origin.measuredAt),
                   .firstProgress = std::nullopt,
                   .duration = origin.duration},
        .keptOrigin = std::move(origin)};
}

std::optional<RootScan> scanInFile(const std::string& path, const Request& request) {
    auto kept = readScanFile(path);
    if (!kept)
        return std::nullopt;
    if (!*kept)
        finishUnread(path, kept->error());
    if (request.has(excludeOption.name))
        finishWrongUsage("--exclude: the scan in " + path
                         + " was made before; measure anew to leave something out");
    return RootScan::ofKept(**std::move(kept));
}

RootScan scanOrFileOf(const std::string& root, const Request& request) {
    auto kept = scanInFile(root, request);
    return kept ? *std::move(kept) : RootScan{.result = scanOf(root, request), .keptOrigin = std::nullopt};
}

RootScan scanOrFileOfRoot(const Request& request) {
    return scanOrFileOf(request.operands.front(), request);
}

RootScan scanOrFileOfExisting(const std::string& root, const Request& request) {
    auto scan = scanOrFileOf(root, request);
    if (scan.result.tree.count() == 0)
        finishUnmeasured(root);
    return scan;
}

RootScan scanOrFileOfExistingRoot(const Request& request) {
    return scanOrFileOfExisting(request.operands.front(), request);
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
