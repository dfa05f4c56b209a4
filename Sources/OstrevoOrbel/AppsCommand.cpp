#include "AppsCommand.h"

#include "CommandOutput.h"
#include "Find/AppInventory.h"
#include "LaunchOptions.h"
#include "Util/JsonText.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace orbel {

namespace {

nlohmann::json jsonOf(const InstalledApp& app) {
    nlohmann::json json{
        {"name", app.name}, {"path", app.path}, {"source", app.source}, {"status", rawValue(app.status)}};
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

} // namespace

void runAppsCommandIfRequested(std::span<const std::string> arguments) {
    if (!contains(arguments, "--apps-json"))
        return;
    nlohmann::json apps = nlohmann::json::array();
    for (const auto& app : AppInventory::scan(AppInventory::defaultFolders()))
        if (!app.isHidden)
            apps.push_back(jsonOf(app));
    finish(prettyJson({{"apps", std::move(apps)}}) + "\n");
}

} // namespace orbel
