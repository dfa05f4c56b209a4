#pragma once

#include "Platform/Thread.h"

#include <functional>
#include <future>
#include <memory>
#include <string>
#include <utility>

namespace orbel {

/// Runs blocking work on a thread of its own, so that neither the caller nor a shared pool waits for it.
struct BlockingWork {
    BlockingWork() = delete;

    /// Starts a thread named `label` that calls `work` once; the future becomes ready with its result.
    /// Dropping the future does not wait for the work, which must therefore own all that it uses. When the
    /// system has no thread to give, the work is done before this returns.
    template <class Work>
    static auto run(std::string label, Work work) -> std::future<decltype(work())> {
        using Result = decltype(work());
        auto task = std::make_shared<std::packaged_task<Result()>>(std::move(work));
        auto result = task->get_future();
        if (!Thread::startDetached(std::move(label), [task] { (*task)(); }))
            (*task)();
        return result;
    }
};

} // namespace orbel
