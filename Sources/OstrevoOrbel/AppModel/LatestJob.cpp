#include "AppModel/LatestJob.h"

#include <QMetaObject>
#include <QObject>

namespace orbel {

namespace {

/// What deliveries are posted to: on the main thread, which makes the first job, to the end of the process.
QObject& receiver() {
    static auto* const object = new QObject;
    return *object;
}

} // namespace

LatestJob::LatestJob(const char* threadName) : threadName_(threadName) {
    receiver();
}

void LatestJob::Run::report(std::function<void()> delivery) const {
    const auto deliver = [state = state_, delivery = std::move(delivery)] {
        if (state->counts)
            delivery();
    };
    QMetaObject::invokeMethod(&receiver(), deliver, Qt::QueuedConnection);
}

void LatestJob::stop() {
    if (current_)
        current_->cancellation.cancel();
}

void LatestJob::drop() {
    for (auto* const state : {&current_, &added_}) {
        if (const auto dropped = std::exchange(*state, nullptr)) {
            dropped->cancellation.cancel();
            dropped->counts = false;
        }
    }
}

void LatestJob::stopAndWait() {
    stop();
    if (current_)
        current_->hasEnded.wait(false);
}

LatestJob::End::~End() {
    state.hasEnded = true;
    state.hasEnded.notify_all();
}

} // namespace orbel
