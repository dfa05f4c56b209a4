#pragma once

namespace orbel::platform {

/// The choices that follow a platform's conventions.
struct Conventions {
    int defaultWalkerWorkers = 1;
};

/// Those of the platform this was built for.
const Conventions& conventions();

} // namespace orbel::platform
