#pragma once

#include "AppModel/AppEnvironment.h"
#include "Find/RemovedApps.h"
#include "Models/TickedItem.h"
#include "Scan/Exclusions.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orbel {

/// What removed applications left, with all that a confirmation has to tell of each item. A plain value.
struct RemovedLook {
    struct App {
        RemovedApp app;
        std::vector<TickedItem> items; ///< those of the application, in its order
    };

    std::vector<App> apps;             ///< the largest first
    std::vector<std::string> failures; ///< for the user

    /// Gives the look at these applications, to be called on another thread: it owns all that it needs.
    using Inventory = std::shared_ptr<const std::vector<InstalledApp>>;
    static std::function<RemovedLook(const ScanCancellation&)>
    at(const AppEnvironment& environment, Inventory apps, std::shared_ptr<const LeftoverMatcher> matcher,
       std::shared_ptr<const SafetyPolicy> policy, Exclusions exclusions);
};

} // namespace orbel
