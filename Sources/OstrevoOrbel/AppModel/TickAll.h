#pragma once

#include "AppModel/LatestJob.h"
#include "Models/Ticks.h"

#include <functional>
#include <vector>

namespace orbel {

/// Ticks all that a list shows beside what is ticked already. The items are made and put in order on a
/// thread of its own: of a hundred thousand that takes longer than the main thread may stand still. Used on
/// the main thread.
class TickAll {
public:
    using Items = std::function<std::vector<TickedItem>(const LatestJob::Run& run)>;

    /// `ticks` outlive this.
    explicit TickAll(Ticks& ticks) : ticks_(ticks) {}

    /// `items` is called on any thread, once or more, and owns all that it uses. Nothing becomes of it when
    /// the ticks are cleared or replaced meanwhile. `done` is called on the main thread once they are ticked.
    void run(
        const Items& items, std::function<void()> done = [] {});
    /// The list is another one now.
    void drop() { job_.drop(); }

private:
    Ticks& ticks_;
    LatestJob job_{"orbel.tick-all"};
};

} // namespace orbel
