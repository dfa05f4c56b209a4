#include "AppModel/TickAll.h"

#include <utility>

namespace orbel {

void TickAll::run(const Items& items, std::function<void()> done) {
    auto lent = ticks_.lend();
    job_.run(
        [lent, items](const LatestJob::Run& run) {
            auto content = std::make_unique<Ticks::Content>(*lent);
            for (auto& item : items(run))
                content->put(std::move(item));
            return content;
        },
        [this, lent, items, done = std::move(done),
         epoch = ticks_.epoch()](std::unique_ptr<Ticks::Content> content) mutable {
            if (epoch != ticks_.epoch())
                return;
            // What was ticked or unticked meanwhile counts too.
            if (!ticks_.take(std::move(lent), std::move(content)))
                run(items, done);
            else
                done();
        });
}

} // namespace orbel
