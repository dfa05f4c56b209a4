#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/ItemJson.h"
#include "Commands/UserContext.h"
#include "Find/AppInventory.h"
#include "Find/RemovedApps.h"
#include "Find/UninstallPlan.h"
#include "Safety/SafetyPolicy.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"
#include "Util/ShownText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <vector>

namespace orbel {

namespace {

using nlohmann::json;

/// Words on one line, whatever name from the disk they hold.
std::string shown(std::string_view words) {
    return isolatedText(visibleText(words));
}

std::string tagOf(const DeletionItem& item) {
    if (item.blockedReason)
        return "[" + *item.blockedReason + "]";
    return item.preselected ? "[ok, pre-selected]" : "[ok]";
}

std::string linesOf(const UninstallPlan& plan) {
    const auto& app = plan.app;
    std::string lines = "\n## " + shown(app.name) + "  [" + std::string(rawValue(app.status)) + "]  "
                        + shown(app.bundleID.value_or("no bundle id")) + "\n";
    if (!app.appGroups.empty()) {
        lines += "   app groups: ";
        for (const auto& group : app.appGroups)
            lines += (&group == &app.appGroups.front() ? "" : ", ") + shown(group);
        lines += "\n";
    }
    for (const auto& item : plan.items)
        lines += "   " + shown(tagOf(item)) + " " + shown(item.path)
                 + (item.note ? "  — " + shown(*item.note) : "") + "\n";
    for (const auto& leftover : plan.systemLeftovers)
        lines += "   [needs admin, shown only] " + shown(leftover.path) + "\n";
    if (plan.items.size() < 2 && plan.systemLeftovers.empty())
        lines += "   (no leftovers found)\n";
    return lines;
}

/// The applications, and what is found for all of them alike.
struct Applications {
    Applications()
        : apps(AppInventory::scan(AppInventory::defaultFolders())),
          matcher(policy.homePath(), "/Library"),
          programs(platform::runningPrograms()) {}

    /// Of those that are shown, in their order.
    void forEachPlan(const UninstallPlan::Measure& measure, const auto& use) const {
        for (const auto& app : apps) {
            if (app.isHidden)
                continue;
            std::vector<InstalledApp> others;
            std::ranges::copy_if(apps, std::back_inserter(others),
                                 [&](const InstalledApp& other) { return other.path != app.path; });
            use(UninstallPlan::make(app, others, matcher, policy, measure,
                                    [&] { return std::vector(programs); }));
        }
    }

    UserContext user;
    const SafetyPolicy& policy = user.policy();
    std::vector<InstalledApp> apps;
    LeftoverMatcher matcher;
    std::vector<platform::RunningProgram> programs;
};

void runDry(const Request& /*request*/) {
    const Applications known;
    const auto shownApps = std::ranges::count(known.apps, false, &InstalledApp::isHidden);
    std::string text = "# Leftovers dry run (read-only) — " + std::to_string(shownApps)
                       + " apps. [ok] = selectable; otherwise the gate's or the plan's reason.\n";
    // Sizes are not told, so only what decides is looked for.
    const auto measure = [](const std::string& path) {
        auto measured = TreeScanner::measure(path);
        measured.bytes = 0;
        return measured;
    };
    known.forEachPlan(measure, [&](const UninstallPlan& plan) { text += linesOf(plan); });
    finish(text);
}

json itemsJson(const std::vector<DeletionItem>& items) {
    json list = json::array();
    for (const auto& item : items) {
        auto object = itemJson(item);
        object["bytes"] = item.estimatedBytes;
        if (const auto evidence = LeftoverItem::evidence(item); !evidence.empty())
            object["evidence"] = evidence;
        list.push_back(std::move(object));
    }
    return list;
}

json planJson(const UninstallPlan& plan) {
    const auto& app = plan.app;
    json object{{"name", app.name}, {"status", rawValue(app.status)}, {"items", itemsJson(plan.items)}};
    if (app.bundleID)
        object["id"] = *app.bundleID;
    if (!app.appGroups.empty())
        object["appGroups"] = app.appGroups;
    for (const auto& leftover : plan.systemLeftovers) {
        json shared{{"evidence", leftover.evidence}};
        putPath(shared, "path", leftover.path);
        object["needsAdmin"].push_back(std::move(shared));
    }
    return object;
}

json removedJson(const RemovedApp& app) {
    json object{{"id", lossyUtf8(app.id)},
                {"kind", rawValue(app.kind)},
                {"name", app.name},
                {"bytes", app.bytes()},
                {"items", itemsJson(app.items)}};
    if (!app.lastSeen.empty())
        object["lastSeen"] = app.lastSeen;
    return object;
}

void runJson(const Request& /*request*/) {
    const Applications known;
    json apps = json::array();
    known.forEachPlan({}, [&](const UninstallPlan& plan) { apps.push_back(planJson(plan)); });
    json removed = json::array();
    const InstalledNames installed(known.apps, platform::installedIds(known.policy.homePath()),
                                   known.programs);
    const auto look = RemovedApps::look({.apps = known.apps,
                                         .matcher = known.matcher,
                                         .policy = known.policy,
                                         .installed = installed,
                                         .openFiles = InUseChecker::OpenFiles(takeMappedSnapshot())},
                                        known.user.seenPackages(), currentDate());
    for (const auto& app : look.apps)
        removed.push_back(removedJson(app));
    for (const auto& failure : look.failures)
        say(failure);
    finish(prettyJson({{"apps", std::move(apps)}, {"removed", std::move(removed)}}) + "\n");
}

} // namespace

constinit const Command leftoversCommand{
    .name = "--leftovers-dry-run",
    .isLenient = true,
    .help =
        "Print for every application what would go with it: its files and what it left in the home folder. "
        "Nothing is moved.",
    .run = runDry,
};

constinit const Command leftoversJsonCommand{
    .name = "--leftovers-json",
    .help =
        "The same as JSON, with sizes and evidence, and what applications left that were removed: certain "
        "ones only, by whole names. Notes which packages are installed, to know later which were removed.",
    .run = runJson,
};

} // namespace orbel
