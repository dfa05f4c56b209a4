#pragma once

#include "Find/InstalledApp.h"
#include "Platform/InstalledIds.h"
#include "Platform/RunningPrograms.h"
#include "Support/TemporaryFolder.h"

#include <vector>

namespace orbel::test {

/// A home with applications and what they left, on the disk.
class SampleApps {
public:
    SampleApps();

    const TemporaryFolder home;
    /// "Aster", a program of the user's own with a cache that is certainly its own and settings besides;
    /// "Birch", of a package; "Cedar", a part of the system; then some that left nothing.
    std::vector<InstalledApp> inventory;

    /// The one of that name.
    const InstalledApp& app(const std::string& name) const;
    platform::RunningProgram runningAster() const;
    /// What is installed besides: Birch's package, and neither "org.example.Willow", of which a sandbox and a
    /// cache are left, nor the snap "poplar".
    static platform::InstalledIds installedIds();
};

} // namespace orbel::test
