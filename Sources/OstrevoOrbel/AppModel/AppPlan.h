#pragma once

#include "Find/UninstallPlan.h"
#include "Models/TickedItem.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/Exclusions.h"
#include "Scan/ScanCancellation.h"

#include <memory>
#include <vector>

namespace orbel {

/// What goes with one application, with all that a confirmation has to tell of each item. A plain value.
struct AppPlan {
    UninstallPlan plan;
    std::vector<TickedItem> items; ///< those of the plan, in its order

    /// Looks at all that the application left; what is left out of measuring stays. Blocks; a cancelled one
    /// ends soon, with figures that are not to be shown.
    static AppPlan make(const InstalledApp& app, const std::vector<InstalledApp>& inventory,
                        const LeftoverMatcher& matcher, const SafetyPolicy& policy,
                        const UninstallPlan::Running& running, const Exclusions& exclusions,
                        const ScanCancellation& cancellation);
};

} // namespace orbel
