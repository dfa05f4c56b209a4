#pragma once

#include "AppModel/Inbox.h"
#include "Scan/ScanCancellation.h"

#include <atomic>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace orbel {

/// Work on a thread of its own, of which only the last answer counts: a newer run cancels the one before, and
/// what that one still delivers is dropped. Made, used and destroyed on the main thread, which delivers the
/// answers. A member that comes after all that its answers use, so that none finds these gone.
class LatestJob {
    struct State;

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
    explicit LatestJob(const char* threadName) : threadName_(threadName) {}
    ~LatestJob() { drop(); }
    LatestJob(const LatestJob&) = delete;
    LatestJob& operator=(const LatestJob&) = delete;

    /// Calls `work`, with the Run if it takes one, on a thread of its own, and `then` with its answer on the
    /// main thread, where the job no longer runs. `work` owns all that it uses.
    template <class Work, class Then>
    void run(Work work, Then then) {
        const Run run = begin();
        inbox_.runAside(
            threadName_,
            [run, work = std::move(work)]() mutable {
                const End end{*run.state_};
                if constexpr (std::is_invocable_v<Work&, const Run&>)
                    return work(run);
                else
                    return work();
            },
            [this, run, then = std::move(then)](auto&&... answer) mutable {
                if (finish(run))
                    then(std::forward<decltype(answer)>(answer)...);
            });
    }

    /// Asks the work to end early; its answer still counts.
    void stop();
    /// Asks the work to end early, and drops its answer.
    void drop();
    /// Stops, and waits until the work has ended. Its answer counts, but has not been delivered.
    void stopAndWait();

    /// From run() until just before the answer is delivered.
    bool isRunning() const { return current_ != nullptr; }
    bool isStopping() const;

private:
    struct State {
        Inbox::Address address;
        const LatestJob* job; ///< only to be used on the main thread, by what `address` delivers
        ScanCancellation cancellation{};
        std::atomic<bool> hasEnded = false;
    };

    /// Marks the end of the work, whichever way it returns.
    struct End {
        State& state;
        ~End();
    };

    Run begin();
    bool finish(const Run& run);

    const char* threadName_;
    std::shared_ptr<State> current_;
    Inbox inbox_; ///< the last member
};

} // namespace orbel
