#include "LargeCommand.h"

#include "CommandOutput.h"
#include "Find/LargeOldQuery.h"
#include "ItemJson.h"
#include "LaunchOptions.h"
#include "Scan/TreeScanner.h"
#include "UserContext.h"
#include "Util/JsonText.h"
#include "Util/ParseNumber.h"

#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

/// The number after a switch; absent without the switch. Anything else ends the process: a filter that was
/// misread would list what nobody asked for.
std::optional<std::int64_t> countAfter(std::span<const std::string> arguments, std::string_view name) {
    if (!contains(arguments, name))
        return std::nullopt;
    const auto number = parseInteger(valueAfter(arguments, name).value_or(""));
    if (!number || *number < 0)
        finishWrongUsage(std::string(name) + " takes a whole number, 0 or more");
    return number;
}

LargeOldQuery queryIn(std::span<const std::string> arguments) {
    constexpr double secondsPerDay = 24.0 * 60 * 60;
    LargeOldQuery query;
    if (const auto bytes = countAfter(arguments, "--min-bytes"))
        query.minimumBytes = static_cast<std::uint64_t>(*bytes);
    if (const auto days = countAfter(arguments, "--unused-days"))
        query.unusedFor =
            *days == 0 ? std::nullopt : std::optional(static_cast<double>(*days) * secondsPerDay);
    return query;
}

json rowJson(const LargeOldQuery::Row& row) {
    auto object = itemJson(row.item);
    object["bytes"] = row.bytes;
    object["kind"] = rawValue(row.kind);
    object["lastUsed"] = {{"date", iso8601(row.lastUsed.date)},
                          {"source", rawValue(row.lastUsed.source)},
                          {"record", rawValue(row.lastUsed.record)}};
    object["openBy"] = json::array();
    for (const auto& process : row.openBy)
        object["openBy"].push_back({{"pid", process.pid}, {"name", process.name}});
    return object;
}

} // namespace

void runLargeCommandIfRequested(std::span<const std::string> arguments) {
    const auto root = valueAfter(arguments, "--large-json");
    if (!root)
        return;
    const auto query = queryIn(arguments);
    const ScanCancellation nobodyCancels;
    const auto scan = TreeScanner::scan(*root, std::nullopt, nobodyCancels, nullptr);
    const UserContext user;
    const InUseChecker::OpenFiles openFiles(takeMappedSnapshot());
    json files = json::array();
    std::uint64_t bytes = 0;
    for (const auto& row : query.run(scan.tree, user.policy(), currentDate(), openFiles)) {
        files.push_back(rowJson(row));
        bytes += row.bytes;
    }
    json report{{"root", *root},  {"minimumBytes", query.minimumBytes},      {"unusedForSeconds", nullptr},
                {"bytes", bytes}, {"unreadable", scan.tree.unreadableCount}, {"files", std::move(files)}};
    if (query.unusedFor)
        report["unusedForSeconds"] = static_cast<std::int64_t>(*query.unusedFor);
    finish(prettyJson(report) + "\n");
}

} // namespace orbel
