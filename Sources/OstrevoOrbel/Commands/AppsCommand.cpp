#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Find/AppInventory.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace orbel {

namespace {

nlohmann::json jsonOf(const InstalledApp& app) {
    nlohmann::json json{{"name", app.name}, {"source", app.source}, {"status", rawValue(app.status)}};
    putPath(json, "path", app.path);
    if (app.bundleID)
        json["id"] = *app.bundleID;
    if (app.version)
        json["version"] = *app.version;
    if (!app.reason.empty())
        json["reason"] = app.reason;
    if (!app.command.empty())
        json["command"] = app.command;
    return json;
}

void run(const Request& /*request*/) {
    nlohmann::json apps = nlohmann::json::array();
    for (const auto& app : AppInventory::scan(AppInventory::defaultFolders()))
        if (!app.isHidden)
            apps.push_back(jsonOf(app));
    finish(prettyJson({{"apps", std::move(apps)}}) + "\n");
}

} // namespace

constinit const Command appsCommand{
    .name = "--apps-json",
    .help = "Print the installed applications as JSON: whether each can be moved to the Trash, or else what "
            "removes it.",
    .run = run,
};

} // namespace orbel
