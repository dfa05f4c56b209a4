#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace orbel {

/// Calls `body(task)` once for every task from 0 to `tasks` - 1, on as many threads as there are processors,
/// the calling one among them, and returns when all are done. Tasks start in ascending order and must not
/// depend on one another. With one processor, or when no thread can be started, the calling thread does all.
void forEachTask(std::size_t tasks, const std::function<void(std::size_t)>& body);

/// The same on at most `threads` threads: more than processors where the tasks wait for a disk.
void forEachTask(std::size_t tasks, std::size_t threads, const std::function<void(std::size_t)>& body);

/// Cuts 0 ..< `count` into ranges of at least `grain` and calls `body(begin, end)` for each,
/// as forEachTask does.
void forEachRange(std::size_t count, std::size_t grain,
                  const std::function<void(std::size_t, std::size_t)>& body);

/// Calls `make(task)` as forEachTask does, and `take(made)` with what each returned, on the calling
/// thread and in the order of the tasks, until that is false. Makes no more than a few results before
/// they are taken.
template <class Make, class Take>
void mapInOrder(std::size_t tasks, const Make& make, const Take& take) {
    constexpr std::size_t tasksAtATime = 16;
    std::array<std::invoke_result_t<const Make&, std::size_t>, tasksAtATime> made;
    for (std::size_t first = 0; first < tasks; first += tasksAtATime) {
        const auto count = std::min(tasks - first, tasksAtATime);
        forEachTask(count, [&](std::size_t task) { made[task] = make(first + task); });
        for (std::size_t task = 0; task < count; ++task)
            if (!take(std::exchange(made[task], {})))
                return;
    }
}

} // namespace orbel
