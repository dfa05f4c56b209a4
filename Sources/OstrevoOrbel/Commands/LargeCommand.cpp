#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/CountOption.h"
#include "Commands/ItemJson.h"
#include "Commands/ListLimits.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Commands/UserContext.h"
#include "Find/LargeOldQuery.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"

#include <array>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

LargeOldQuery queryIn(const Request& request) {
    constexpr double secondsPerDay = 24.0 * 60 * 60;
    LargeOldQuery query;
    if (const auto bytes = countOf(request, minBytesOption.name))
        query.minimumBytes = *bytes;
    if (const auto days = countOf(request, "--unused-days"))
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

std::vector<LargeOldQuery::Row> rowsOf(const RootScan& scan, const LargeOldQuery& query) {
    const auto& tree = scan.result.tree;
    if (scan.keptOrigin)
        return query.shownOnly(tree, scan.measuredAt().value_or(currentDate()));
    const UserContext user;
    const InUseChecker::OpenFiles openFiles(takeMappedSnapshot());
    return query.run(tree, user.policy(), currentDate(), openFiles);
}

void run(const Request& request) {
    const auto query = queryIn(request);
    const auto& root = request.operands.front();
    const auto scan = scanOfExistingRoot(request);
    const auto& tree = scan.result.tree;
    json files = json::array();
    std::uint64_t bytes = 0;
    for (const auto& row : rowsOf(scan, query)) {
        auto& object = files.emplace_back(rowJson(row));
        if (scan.keptOrigin)
            object.erase("openBy");
        if (!row.lastUsed.isKnown)
            object["lastUsed"] = nullptr;
        bytes += row.bytes;
    }
    json report{{"minimumBytes", query.minimumBytes},
                {"unusedForSeconds", nullptr},
                {"bytes", bytes},
                {"unreadable", tree.unreadableCount},
                {"files", std::move(files)}};
    putPath(report, "root", root);
    putExcluded(report, tree);
    putKeptScan(report, scan);
    if (query.unusedFor)
        report["unusedForSeconds"] = static_cast<std::int64_t>(*query.unusedFor);
    finish(prettyJson(report) + "\n");
}

constexpr std::array options{minBytesOption, CommandOption{.name = "--unused-days", .takes = "N"},
                             excludeOption};

} // namespace

constinit const Command largeCommand{
    .name = "--large-json",
    .operands = "ROOT",
    .fewestOperands = 1,
    .options = options,
    .help =
        "Print as JSON the files and packages in ROOT that take N bytes or more on disk (100000000 unless "
        "given) and have not been used for N days (365 unless given, 0 for any age): when each was last "
        "used and how that is known, who has it open, and whether it may be moved. Of a scan in the file "
        "ROOT: "
        "what had not been changed for N days when it was made.",
    .run = run,
};

} // namespace orbel
