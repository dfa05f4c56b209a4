#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/ItemJson.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Commands/UserContext.h"
#include "Find/BrokenShortcutFinder.h"
#include "Find/EmptyFolderFinder.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"

#include <array>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

json rowJson(const EmptyFolderFinder::Row& row) {
    auto object = itemJson(row.item);
    object["bytes"] = row.item.estimatedBytes;
    object["emptyFolders"] = row.nestedCount;
    object["changed"] = iso8601(row.changed);
    return object;
}

json rowJson(const BrokenShortcutFinder::Row& row) {
    auto object = itemJson(row.item);
    object["bytes"] = row.item.estimatedBytes;
    object["kind"] = rawValue(row.kind);
    object["state"] = rawValue(row.state);
    putPath(object, "target", row.target);
    return object;
}

template <class Row>
json rowsJson(const std::vector<Row>& rows) {
    json list = json::array();
    for (const auto& row : rows)
        list.push_back(rowJson(row));
    return list;
}

/// What the tree of a kept scan tells by itself; where a shortcut leads only the disk tells.
json keptLists(const FileTree& tree) {
    json rows = json::array();
    for (const auto& row : EmptyFolderFinder::shownOnly(tree)) {
        auto& object = rows.emplace_back(rowJson(row));
        if (!tree.isModifiedKnown(row.index))
            object["changed"] = nullptr;
    }
    return {{"emptyFolders", std::move(rows)}, {"brokenShortcuts", nullptr}};
}

json listsOf(const RootScan& scan) {
    const auto& tree = scan.result.tree;
    if (scan.keptOrigin)
        return keptLists(tree);
    const UserContext user;
    const auto now = currentDate();
    return {{"emptyFolders", rowsJson(EmptyFolderFinder().run(tree, user.policy(), now))},
            {"brokenShortcuts", rowsJson(BrokenShortcutFinder().run(tree, user.policy(), now))}};
}

void run(const Request& request) {
    const auto scan = scanOfExistingRoot(request);
    const auto& tree = scan.result.tree;
    auto report = listsOf(scan);
    report["unreadable"] = tree.unreadableCount;
    putPath(report, "root", request.operands.front());
    putExcluded(report, tree);
    putKeptScan(report, scan);
    finish(prettyJson(report) + "\n");
}

constexpr std::array options{excludeOption};

} // namespace

constinit const Command tidyCommand{
    .name = "--tidy-json",
    .operands = "ROOT",
    .fewestOperands = 1,
    .options = options,
    .help = "Print as JSON the empty folders in ROOT, the topmost of those inside each other, and the broken "
            "shortcuts: links, launchers and autostart entries that lead nowhere, and the file manager's "
            "bookmarks whose folder is gone. Of a scan in the file ROOT, only the empty folders.",
    .run = run,
};

} // namespace orbel
