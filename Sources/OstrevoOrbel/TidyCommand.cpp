#include "TidyCommand.h"

#include "CommandOutput.h"
#include "Find/BrokenShortcutFinder.h"
#include "Find/EmptyFolderFinder.h"
#include "ItemJson.h"
#include "LaunchOptions.h"
#include "Scan/TreeScanner.h"
#include "UserContext.h"
#include "Util/JsonText.h"

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
    object["target"] = row.target;
    return object;
}

template <class Row>
json rowsJson(const std::vector<Row>& rows) {
    json list = json::array();
    for (const auto& row : rows)
        list.push_back(rowJson(row));
    return list;
}

} // namespace

void runTidyCommandIfRequested(std::span<const std::string> arguments) {
    const auto root = valueAfter(arguments, "--tidy-json");
    if (!root)
        return;
    const ScanCancellation nobodyCancels;
    const auto tree = TreeScanner::scan(*root, std::nullopt, nobodyCancels, nullptr).tree;
    const UserContext user;
    const auto now = currentDate();
    const json report{{"root", *root},
                      {"unreadable", tree.unreadableCount},
                      {"emptyFolders", rowsJson(EmptyFolderFinder().run(tree, user.policy(), now))},
                      {"brokenShortcuts", rowsJson(BrokenShortcutFinder().run(tree, user.policy(), now))}};
    finish(prettyJson(report) + "\n");
}

} // namespace orbel
