#include "AppModel/AppPlan.h"

#include "AppModel/ItemMeasure.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace orbel {

AppPlan AppPlan::make(const InstalledApp& app, const std::vector<InstalledApp>& inventory,
                      const LeftoverMatcher& matcher, const SafetyPolicy& policy,
                      const UninstallPlan::Running& running, const Exclusions& exclusions,
                      const ScanCancellation& cancellation) {
    std::vector<InstalledApp> others;
    std::ranges::copy_if(inventory, std::back_inserter(others),
                         [&](const InstalledApp& other) { return other.path != app.path; });
    ItemMeasure measure(cancellation);
    AppPlan made{.plan = UninstallPlan::make(
                     app, others, matcher, policy,
                     [&](const std::string& path) { return measure.measure(path); }, running),
                 .items = {}};
    made.items.reserve(made.plan.items.size());
    for (auto& item : made.plan.items)
        made.items.push_back(measure.ticked(item, exclusions, policy.homePath()));
    return made;
}

} // namespace orbel
