#include "Services/StallWatch.h"

#include <chrono>

namespace orbel {

namespace {

constexpr std::chrono::milliseconds interval(10);

} // namespace

StallWatch::StallWatch(std::shared_ptr<LiveDiagnostics> diagnostics) : diagnostics_(std::move(diagnostics)) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(interval);
    connect(&timer_, &QTimer::timeout, this, &StallWatch::tick);
    sinceTick_.start();
    timer_.start();
}

void StallWatch::tick() {
    const std::chrono::nanoseconds gap(sinceTick_.nsecsElapsed());
    sinceTick_.start();
    if (gap > interval)
        diagnostics_->noteStall(gap - interval);
}

} // namespace orbel
