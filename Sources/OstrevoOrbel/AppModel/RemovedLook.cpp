#include "AppModel/RemovedLook.h"

#include "AppModel/ItemMeasure.h"
#include "Safety/SafetyPolicy.h"

#include <utility>

namespace orbel {

std::function<RemovedLook(const ScanCancellation&)>
RemovedLook::at(const AppEnvironment& environment, Inventory apps,
                std::shared_ptr<const LeftoverMatcher> matcher, std::shared_ptr<const SafetyPolicy> policy,
                Exclusions exclusions) {
    return [apps = std::move(apps), matcher = std::move(matcher), policy = std::move(policy),
            exclusions = std::move(exclusions), ids = environment.installedIds,
            running = environment.runningPrograms, openFiles = environment.openFiles, now = environment.now,
            packages = SeenPackages(environment.seenPackagesPath)](const ScanCancellation& cancellation) {
        // Nothing that is asked says that something was removed: only what is installed can be known.
        if (!ids)
            return RemovedLook();
        ItemMeasure measure(cancellation);
        const InstalledNames installed(*apps, ids(), running());
        auto look =
            RemovedApps::look({.apps = *apps,
                               .matcher = *matcher,
                               .policy = *policy,
                               .installed = installed,
                               .measure = [&](const std::string& path) { return measure.measure(path); },
                               .openFiles = openFiles ? openFiles() : InUseChecker::OpenFiles()},
                              packages, std::chrono::time_point_cast<Date::duration>(now()));
        RemovedLook found{.apps = {}, .failures = std::move(look.failures)};
        for (auto& app : look.apps) {
            App ticked{.app = std::move(app), .items = {}};
            for (auto& item : ticked.app.items)
                ticked.items.push_back(measure.ticked(item, exclusions, policy->homePath()));
            found.apps.push_back(std::move(ticked));
        }
        return found;
    };
}

} // namespace orbel
