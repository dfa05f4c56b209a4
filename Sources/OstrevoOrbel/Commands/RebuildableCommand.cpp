#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/ItemJson.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Commands/UserContext.h"
#include "Find/RebuildableFinder.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"

#include <array>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

json rowJson(const RebuildableFinder::Row& row) {
    auto object = itemJson(row.item);
    object["bytes"] = row.item.estimatedBytes;
    object["evidence"] = row.evidence;
    object["program"] = row.program;
    object["newestChange"] = iso8601(row.newestChange);
    return object;
}

void run(const Request& request) {
    const auto& root = request.operands.front();
    const auto tree = scanOfExistingDisk(request, "--rebuildable-json reads files and asks git").tree;
    const UserContext user;
    const InUseChecker::OpenFiles openFiles(takeMappedSnapshot());
    json folders = json::array();
    std::uint64_t bytes = 0;
    for (const auto& row : RebuildableFinder().run(tree, user.policy(), currentDate(), openFiles)) {
        folders.push_back(rowJson(row));
        bytes += row.item.estimatedBytes;
    }
    json report{{"bytes", bytes}, {"unreadable", tree.unreadableCount}, {"folders", std::move(folders)}};
    putPath(report, "root", root);
    putExcluded(report, tree);
    finish(prettyJson(report) + "\n");
}

constexpr std::array options{excludeOption};

} // namespace

constinit const Command rebuildableCommand{
    .name = "--rebuildable-json",
    .operands = "ROOT",
    .fewestOperands = 1,
    .options = options,
    .help = "Print as JSON the folders in ROOT that programs make again, the largest first: build output, "
            "fetched packages and caches, each with the evidence for it, the program and the newest change.",
    .run = run,
};

} // namespace orbel
