#include "AppModel/LatestJob.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace orbel {

namespace {

/// A call on its way to the main thread. The thread sanitizer does not see into Qt's event queue: it is told
/// that what precedes a posting also precedes the delivery, and the end of a call that is never delivered.
struct PostedCall final : QEvent {
    explicit PostedCall(std::function<void()> made) : QEvent(User), call(std::move(made)) {
#ifdef __SANITIZE_THREAD__
        __tsan_release(this);
#endif
    }
#ifdef __SANITIZE_THREAD__
    ~PostedCall() override {
        __tsan_acquire(this);
    }
#endif
    std::function<void()> call;
};

struct Receiver final : QObject {
    bool event(QEvent* event) override {
#ifdef __SANITIZE_THREAD__
        __tsan_acquire(event);
#endif
        if (event->type() != QEvent::User)
            return QObject::event(event);
        static_cast<PostedCall*>(event)->call();
        return true;
    }
};

/// What calls are posted to: on the main thread, which makes the first job, to the end of the process.
QObject& receiver() {
    static auto* const object = new Receiver;
    return *object;
}

} // namespace

LatestJob::LatestJob(const char* threadName) : threadName_(threadName) {
    receiver();
}

void LatestJob::Run::report(std::function<void()> delivery) const {
    post([state = state_, delivery = std::move(delivery)] {
        if (state->counts)
            delivery();
    });
}

void LatestJob::post(std::function<void()> call) {
    QCoreApplication::postEvent(&receiver(), new PostedCall(std::move(call)));
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
