#pragma once

#include <cstddef>
#include <functional>

namespace orbel {

/// Calls `body(task)` once for every task from 0 to `tasks` - 1, on as many threads as there are processors,
/// the calling one among them, and returns when all are done. Tasks start in ascending order and must not
/// depend on one another. With one processor, or when no thread can be started, the calling thread does all.
void forEachTask(std::size_t tasks, const std::function<void(std::size_t)>& body);

/// The same on at most `threads` threads: more than processors where the tasks wait for a disk.
void forEachTask(std::size_t tasks, std::size_t threads, const std::function<void(std::size_t)>& body);

/// Cuts 0 ..< `count` into ranges of at least `grain` and calls `body(begin, end)` for each, as
/// forEachTask does.
void forEachRange(std::size_t count, std::size_t grain,
                  const std::function<void(std::size_t, std::size_t)>& body);

} // namespace orbel
