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

ScanResult measured(const Request& request) {
    const ScanCancellation nobodyCancels;
    return TreeScanner::scan(request.operands.front(), std::nullopt, nobodyCancels, nullptr,
                             {.paths = {}, .patterns = request.values(excludeOption.name)});
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

RootScan scanOfRoot(const Request& request) {
    const auto& root = request.operands.front();
    auto kept = openScan(root);
    if (!kept)
        return {.result = measured(request), .keptOrigin = std::nullopt};
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

ScanResult scanOfDisk(const Request& request, std::string_view need) {
    if (isScan(request.operands.front()))
        finishWrongUsage(std::string(need) + ", so it needs the disk: give a folder");
    return measured(request);
}

RootScan scanOfExistingRoot(const Request& request) {
    auto scan = scanOfRoot(request);
    if (scan.result.tree.count() == 0)
        finishUnmeasured(request.operands.front());
    return scan;
}

ScanResult scanOfExistingDisk(const Request& request, std::string_view need) {
    auto result = scanOfDisk(request, need);
    if (result.tree.count() == 0)
        finishUnmeasured(request.operands.front());
    return result;
}

void putKeptScan(nlohmann::json& report, const RootScan& scan) {
    if (!scan.keptOrigin)
        return;
    const auto& origin = *scan.keptOrigin;
    const auto measuredAt = scan.measuredAt();
    report["keptScan"] = {{"root", scan.result.tree.path(0, PathCanonicalizer::shared())},
                          {"measuredAt", measuredAt ? nlohmann::json(iso8601(*measuredAt)) : nullptr},
                          {"program", knownText(origin.program)},
                          {"machine", knownText(origin.machine)},
                          {"user", knownText(origin.user)}};
}

void putExcluded(nlohmann::json& report, const FileTree& tree) {
    if (!tree.exclusions.isEmpty() || !tree.excludedNodes.empty())
        report["excluded"] = {{"count", tree.excludedNodes.size()}, {"patterns", tree.exclusions.patterns}};
}

} // namespace orbel
