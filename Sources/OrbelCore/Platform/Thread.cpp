#include "Platform/Thread.h"

#include "Platform/Threads.h"
#include "Util/Check.h"

#include <memory>
#include <utility>

namespace orbel {

namespace {

struct Start {
    std::string name;
    std::function<void()> body;
};

void* runThread(void* argument) {
    const std::unique_ptr<Start> start(static_cast<Start*>(argument));
    platform::nameThisThread(start->name);
    start->body();
    return nullptr;
}

} // namespace

Thread Thread::start(std::string name, std::size_t stackBytes, std::function<void()> body) {
    auto start = std::make_unique<Start>(std::move(name), std::move(body));
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0)
        return {};
    ORBEL_CHECK(pthread_attr_setstacksize(&attributes, stackBytes) == 0, "a stack size the system takes");
    Thread thread;
    thread.joinable_ = pthread_create(&thread.thread_, &attributes, runThread, start.get()) == 0;
    pthread_attr_destroy(&attributes);
    if (thread.joinable_)
        static_cast<void>(start.release()); // the thread owns it now
    return thread;
}

bool Thread::startDetached(std::string name, std::function<void()> body) {
    Thread thread = start(std::move(name), defaultStackBytes, [body = std::move(body)] {
        platform::giveWayOnThisThread();
        body();
    });
    if (!std::exchange(thread.joinable_, false))
        return false;
    pthread_detach(thread.thread_);
    return true;
}

Thread::Thread(Thread&& other) noexcept
    : thread_(other.thread_), joinable_(std::exchange(other.joinable_, false)) {}

Thread& Thread::operator=(Thread&& other) noexcept {
    if (this != &other) {
        join();
        thread_ = other.thread_;
        joinable_ = std::exchange(other.joinable_, false);
    }
    return *this;
}

Thread::~Thread() {
    join();
}

void Thread::join() {
    if (std::exchange(joinable_, false))
        pthread_join(thread_, nullptr);
}

} // namespace orbel
