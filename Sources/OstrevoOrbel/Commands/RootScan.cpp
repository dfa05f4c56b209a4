#include "Commands/RootScan.h"

#include "Commands/CommandOutput.h"
#include "Commands/Request.h"
#include "Safety/PathCanonicalizer.h"
#include "Saved/OpenScan.h"
#include "Scan/TreeScanner.h"
#include "Util/Utf8.h"

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

ScanResult measured(const std::string& root, const Request& request, const ScanWatch& watch = {}) {
    const ScanCancellation nobodyCancels;
    return TreeScanner::scan(root, std::nullopt,
                             watch.cancellation != nullptr ? *watch.cancellation : nobodyCancels,
                             watch.progress, {.paths = {}, .patterns = request.values(excludeOption.name)});
}

nlohmann::json knownText(const std::string& text) {
    return text.empty() ? nlohmann::json(nullptr) : nlohmann::json(lossyUtf8(text));
}

} // namespace

std::optional<Date> RootScan::measuredAt() const {
    if (!keptOrigin)
        return std::chrono::floor<Date::duration>(result.startedAt);
    return keptOrigin->measuredAt == Date() ? std::nullopt : std::optional(keptOrigin->measuredAt);
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
    auto kept = openScan(path);
    if (!kept)
        return std::nullopt;
    if (!*kept)
        finishUnread(path, kept->error());
    if (request.has(excludeOption.name))
        finishWrongUsage("--exclude: the scan in " + path
                         + " was made before; measure anew to leave something out");
    return RootScan::ofKept(**std::move(kept));
}

RootScan scanOf(const std::string& root, const Request& request, const ScanWatch& watch) {
    auto kept = scanInFile(root, request);
    return kept ? *std::move(kept)
                : RootScan{.result = measured(root, request, watch), .keptOrigin = std::nullopt};
}

RootScan scanOfRoot(const Request& request) {
    return scanOf(request.operands.front(), request);
}

ScanResult scanOfDisk(const Request& request, std::string_view need) {
    const auto& root = request.operands.front();
    if (isScan(root))
        finishWrongUsage(std::string(need) + ", so it needs the disk: give a folder");
    return measured(root, request);
}

RootScan scanOfExisting(const std::string& root, const Request& request, const ScanWatch& watch) {
    auto scan = scanOf(root, request, watch);
    if (scan.result.tree.count() == 0)
        finishUnmeasured(root);
    return scan;
}

RootScan scanOfExistingRoot(const Request& request) {
    return scanOfExisting(request.operands.front(), request);
}

ScanResult scanOfExistingDisk(const Request& request, std::string_view need) {
    auto result = scanOfDisk(request, need);
    if (result.tree.count() == 0)
        finishUnmeasured(request.operands.front());
    return result;
}

nlohmann::json originJson(const RootScan& scan) {
    const auto& tree = scan.result.tree;
    const auto origin = scan.keptOrigin ? *scan.keptOrigin : ScanOrigin::ofHere(scan.result);
    const auto measuredAt = scan.measuredAt();
    return {{"root", tree.path(0, PathCanonicalizer::shared())},
            {"measuredAt", measuredAt ? nlohmann::json(iso8601(*measuredAt)) : nullptr},
            {"program", knownText(origin.program)},
            {"machine", knownText(origin.machine)},
            {"user", knownText(origin.user)}};
}

void putKeptScan(nlohmann::json& report, const RootScan& scan) {
    if (scan.keptOrigin)
        report["keptScan"] = originJson(scan);
}

void putExcluded(nlohmann::json& report, const FileTree& tree) {
    if (!tree.exclusions.isEmpty() || !tree.excludedNodes.empty())
        report["excluded"] = {{"count", tree.excludedNodes.size()}, {"patterns", tree.exclusions.patterns}};
}

} // namespace orbel
