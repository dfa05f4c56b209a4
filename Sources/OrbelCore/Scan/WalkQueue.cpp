#include "Scan/WalkQueue.h"

#include <algorithm>
#include <system_error>

namespace orbel::walk {

namespace {

/// What a worker takes at once: enough to come back seldom, little enough to leave some for everybody.
std::size_t batchOf(std::size_t shared, int workerCount) {
    constexpr std::size_t largest = 64;
    return std::clamp(shared / (2 * static_cast<std::size_t>(workerCount)), std::size_t{1}, largest);
}

} // namespace

void WalkQueue::start(WorkUnit& root) {
    const std::scoped_lock lock(mutex_);
    shared_.push_back(&root);
    if (!startWorker())
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
}

bool WalkQueue::startWorker() {
    const auto number = static_cast<int>(threads_.size());
    auto thread = Thread::start("orbel.walker." + std::to_string(number), workerStackBytes_,
                                [this, number] { body_(number); });
    const bool started = thread.joinable();
    if (started)
        threads_.push_back(std::move(thread));
    canStartMore_ = started && static_cast<int>(threads_.size()) < workerCount_;
    updateWanted();
    return started;
}

void WalkQueue::updateWanted() {
    const std::size_t takers = static_cast<std::size_t>(idle_) + (canStartMore_ ? 1 : 0);
    workWanted_.store(takers > shared_.size(), std::memory_order_relaxed);
}

WorkUnit* WalkQueue::next(std::vector<WorkUnit*>& own) {
    if (own.empty()) {
        std::unique_lock lock(mutex_);
        if (shared_.empty()) {
            ++idle_;
            if (idle_ == static_cast<int>(threads_.size())) {
                finished_ = true;
                workCame_.notify_all();
                walkEnded_.notify_all();
            }
            updateWanted();
            workCame_.wait(lock, [this] { return !shared_.empty() || finished_; });
            --idle_;
        }
        if (shared_.empty())
            return nullptr;
        const auto batch = static_cast<std::ptrdiff_t>(batchOf(shared_.size(), workerCount_));
        own.insert(own.end(), shared_.end() - batch, shared_.end());
        shared_.erase(shared_.end() - batch, shared_.end());
        // What is left would only wait: each worker that finds some starts the next one.
        if (canStartMore_ && !shared_.empty())
            startWorker();
        updateWanted();
    }
    WorkUnit* const unit = own.back();
    own.pop_back();
    return unit;
}

void WalkQueue::share(std::vector<WorkUnit*>& own) {
    if (own.size() < 2)
        return;
    const auto given = static_cast<std::ptrdiff_t>(own.size() / 2);
    const std::scoped_lock lock(mutex_);
    shared_.insert(shared_.end(), own.begin(), own.begin() + given);
    own.erase(own.begin(), own.begin() + given);
    for (int i = 0; i < std::min(idle_, static_cast<int>(given)); ++i)
        workCame_.notify_one();
    if (canStartMore_ && shared_.size() > static_cast<std::size_t>(idle_))
        startWorker();
    updateWanted();
}

bool WalkQueue::waitFor(std::chrono::duration<double> time) {
    std::unique_lock lock(mutex_);
    return walkEnded_.wait_for(lock, time, [this] { return finished_; });
}

void WalkQueue::join() {
    // No worker is started any more once the walk is over.
    for (auto& thread : threads_)
        thread.join();
}

} // namespace orbel::walk
