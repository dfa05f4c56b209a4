#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Find/AppInventory.h"
#include "Find/UninstallPlan.h"
#include "Platform/Home.h"
#include "Safety/SafetyPolicy.h"
#include "Util/ShownText.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace orbel {

namespace {

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

void run(const Request& /*request*/) {
    const auto home = platform::homeFolder();
    const auto apps = AppInventory::scan(AppInventory::defaultFolders());
    const auto shownApps = std::ranges::count(apps, false, &InstalledApp::isHidden);
    std::string text = "# Leftovers dry run (read-only) — " + std::to_string(shownApps)
                       + " apps. [ok] = selectable; otherwise the gate's or the plan's reason.\n";
    if (apps.empty())
        finish(text);

    const SafetyPolicy policy(home);
    const LeftoverMatcher matcher(policy.canonical(home).value_or(home), "/Library");
    // Sizes are not told, so only what decides is looked for.
    const auto measure = [](const std::string& path) {
        auto measured = TreeScanner::measure(path);
        measured.bytes = 0;
        return measured;
    };
    const auto programs = platform::runningPrograms();
    for (const auto& app : apps) {
        if (app.isHidden)
            continue;
        std::vector<InstalledApp> others;
        std::ranges::copy_if(apps, std::back_inserter(others),
                             [&](const InstalledApp& other) { return other.path != app.path; });
        text += linesOf(UninstallPlan::make(app, others, matcher, policy, measure,
                                            [&] { return std::vector(programs); }));
    }
    finish(text);
}

} // namespace

constinit const Command leftoversCommand{
    .name = "--leftovers-dry-run",
    .isLenient = true,
    .help =
        "Print for every application what would go with it: its files and what it left in the home folder. "
        "Nothing is moved.",
    .run = run,
};

} // namespace orbel
