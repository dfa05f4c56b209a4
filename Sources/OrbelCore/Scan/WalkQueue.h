#pragma once

#include "Platform/Thread.h"
#include "Scan/WalkStore.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

namespace orbel::walk {

/// Shares the folders that are still to be listed among the workers of one walk, and starts the workers.
///
/// Each worker keeps a stack of its own and goes depth first without any lock. Only while another worker is
/// idle, which one relaxed load shows, does a worker give away the older half of its stack: the folders
/// nearest to the root, which promise the most work. A shared queue that all workers visit for every folder
/// costs a seventh more on trees with many small folders.
///
/// Workers are started one by one while there is more shared work than idle workers, so that measuring a
/// small folder costs one thread and not all of them.
class WalkQueue {
public:
    /// Runs in a worker's thread until there is nothing left; gets the worker's number, from 0.
    using WorkerBody = std::function<void(int)>;

    /// `workerCount` is at least 1.
    WalkQueue(int workerCount, std::size_t workerStackBytes, WorkerBody body)
        : workerCount_(workerCount), workerStackBytes_(workerStackBytes), body_(std::move(body)) {}

    /// Hands out the first folder and starts the first worker. Throws std::system_error (EAGAIN) when the
    /// system has no thread to give.
    void start(WorkUnit& root);

    /// The next folder for a worker, from its own stack or from what others gave; blocks while others still
    /// may give some. Absent when the walk is over, which the last worker to run dry finds out.
    WorkUnit* next(std::vector<WorkUnit*>& own);

    /// Whether another worker is idle and would take work. A hint: it may be out of date.
    bool isWorkWanted() const { return workWanted_.load(std::memory_order_relaxed); }

    /// Gives away the older half of a worker's stack. The newest folder always stays.
    void share(std::vector<WorkUnit*>& own);

    /// For the thread that runs the walk: waits until it is over or the time is up; true when it is over.
    bool waitFor(std::chrono::duration<double> time);

    /// Waits until every worker has ended; only after the walk is over.
    void join();

private:
    bool startWorker(); // with the lock held
    void updateWanted();

    const int workerCount_;
    const std::size_t workerStackBytes_;
    const WorkerBody body_;

    std::mutex mutex_; // guards all that follows
    std::condition_variable workCame_;
    std::condition_variable walkEnded_;
    std::vector<WorkUnit*> shared_;
    std::vector<Thread> threads_;
    int idle_ = 0;
    bool canStartMore_ = true;
    bool finished_ = false;

    std::atomic<bool> workWanted_ = false;
};

} // namespace orbel::walk
