#pragma once

#include "Platform/Thread.h"
#include "Scan/ScanCancellation.h"

#include <atomic>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace orbel {

/// Work on a thread of its own, of which only the last answer counts: a newer run cancels the one before, and
/// what that one still delivers is dropped. Made, used and destroyed on the main thread, whose event loop
/// delivers the answers; what is delivered later than the job lives is dropped as well.
class LatestJob {
    struct State {
        ScanCancellation cancellation{};
        std::atomic<bool> hasEnded = false;
        bool counts = true; ///< only for the main thread
    };

public:
    /// One run, as its work sees it. Any thread may use it; it may outlive the job.
    class Run {
    public:
        const ScanCancellation& cancellation() const { return state_->cancellation; }
        bool isCancelled() const { return cancellation().isCancelled(); }
        /// Makes the delivery on the main thread, in the order of reporting, before the answer; not when the
        /// run has been replaced or dropped by then.
        void report(std::function<void()> delivery) const;

    private:
        friend class LatestJob;
        explicit Run(std::shared_ptr<State> state) : state_(std::move(state)) {}
        std::shared_ptr<State> state_;
    };

    /// `threadName`: a literal.
    explicit LatestJob(const char* threadName);
    ~LatestJob() { drop(); }
    LatestJob(const LatestJob&) = delete;
    LatestJob& operator=(const LatestJob&) = delete;

    /// Calls `work`, with the Run if it takes one, on a thread of its own, and `then` with its answer on the
    /// main thread. `work` owns all that it uses. When the system has no thread to give, the work is done
    /// before this returns.
    template <class Work, class Then>
    void run(Work work, Then then) {
        drop();
        current_ = std::make_shared<State>();
        start(current_, std::move(work), [this, then = std::move(then)](auto&&... answer) mutable {
            std::exchange(current_, nullptr)->counts = false;
            then(std::forward<decltype(answer)>(answer)...);
        });
    }

    /// The same beside what runs: each answer counts, until drop().
    template <class Work, class Then>
    void add(Work work, Then then) {
        if (!added_)
            added_ = std::make_shared<State>();
        start(added_, std::move(work), std::move(then));
    }

    /// Asks what run() started to end early; its answer still counts.
    void stop();
    /// Asks all work to end early, and drops its answers.
    void drop();
    /// Stops, and waits until the work has ended. Its answer counts, but has not been delivered.
    void stopAndWait();

    /// Makes the call on the main thread, in the order of posting. Any thread may post, once there was a job.
    static void post(std::function<void()> call);

    /// From run() until just before the answer is delivered.
    bool isRunning() const { return current_ != nullptr; }
    bool isStopping() const { return current_ && current_->cancellation.isCancelled(); }

private:
    /// Marks the end of the work, whichever way it returns.
    struct End {
        State& state;
        ~End();
    };

    template <class Work>
    static auto callWith(Work& work, const Run& run) {
        if constexpr (std::is_invocable_v<Work&, const Run&>)
            return work(run);
        else
            return work();
    }

    template <class Work, class Then>
    void start(std::shared_ptr<State> state, Work work, Then then) {
        auto job = [run = Run(std::move(state)), work = std::move(work), then = std::move(then)]() mutable {
            const End end{*run.state_};
            if constexpr (std::is_void_v<decltype(callWith(work, run))>) {
                callWith(work, run);
                run.report(std::move(then));
            } else {
                auto answer = std::make_shared<decltype(callWith(work, run))>(callWith(work, run));
                run.report([answer, then = std::move(then)]() mutable { then(std::move(*answer)); });
            }
        };
        // A std::function copies what it holds; the work may own what cannot be copied.
        auto shared = std::make_shared<decltype(job)>(std::move(job));
        if (!Thread::startDetached(threadName_, [shared] { (*shared)(); }))
            (*shared)();
    }

    const char* threadName_;
    std::shared_ptr<State> current_; ///< of run()
    std::shared_ptr<State> added_;   ///< of add()
};

} // namespace orbel
