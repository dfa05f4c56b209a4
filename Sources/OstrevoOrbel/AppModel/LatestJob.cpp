#include "AppModel/LatestJob.h"

namespace orbel {

void LatestJob::Run::report(std::function<void()> delivery) const {
    state_->address.send([state = state_, delivery = std::move(delivery)] {
        if (state->job->current_ == state)
            delivery();
    });
}

LatestJob::Run LatestJob::begin() {
    drop();
    current_ = std::make_shared<State>(inbox_.address(), this);
    return Run(current_);
}

/// Whether this run's answer counts.
bool LatestJob::finish(const Run& run) {
    if (current_ != run.state_)
        return false;
    current_.reset();
    return true;
}

void LatestJob::stop() {
    if (current_)
        current_->cancellation.cancel();
}

void LatestJob::drop() {
    stop();
    current_.reset();
}

void LatestJob::stopAndWait() {
    stop();
    if (current_)
        current_->hasEnded.wait(false);
}

bool LatestJob::isStopping() const {
    return current_ && current_->cancellation.isCancelled();
}

LatestJob::End::~End() {
    state.hasEnded = true;
    state.hasEnded.notify_all();
}

} // namespace orbel
