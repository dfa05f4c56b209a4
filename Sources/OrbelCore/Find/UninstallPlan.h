#pragma once

#include "Find/InstalledApp.h"
#include "Find/LeftoverItem.h"
#include "Find/LeftoverMatcher.h"
#include "Platform/RunningPrograms.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace orbel {

class SafetyPolicy;

/// What goes with an application. A plain value, true for the moment in which it was made; each item is
/// checked again when it is moved.
struct UninstallPlan {
    using Measure = LeftoverItem::Measure;
    using Running = std::function<std::vector<platform::RunningProgram>()>;

    InstalledApp app;
    /// The application first, whether it is removable or not, then its own files, then its leftovers, the
    /// certain ones first. `detail` holds the path and, after " · ", why it belongs to the application. Only
    /// caches and logs are ever preselected, and only certain ones.
    std::vector<DeletionItem> items;
    std::size_t ownItems = 0; ///< how many of them, from the first, are the application and its own files
    std::vector<Leftover> systemLeftovers; ///< shown only: an administrator would have to remove them
    std::vector<platform::RunningProgram> runningProcesses;

    /// `others`: all other applications, also hidden ones. `measure` gives the size of an item and whether it
    /// holds protected data; empty walks the disk. `running`: what runs now; empty asks the system.
    static UninstallPlan make(const InstalledApp& app, std::span<const InstalledApp> others,
                              const LeftoverMatcher& matcher, const SafetyPolicy& policy,
                              const Measure& measure, const Running& running = {});

    /// Those of the programs that are the application, or lie in it.
    static std::vector<platform::RunningProgram> runningOf(const InstalledApp& app,
                                                           std::vector<platform::RunningProgram> programs);
};

} // namespace orbel
