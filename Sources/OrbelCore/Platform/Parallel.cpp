#include "Platform/Parallel.h"

#include "Platform/Thread.h"
#include "Platform/Threads.h"

#include <algorithm>
#include <atomic>
#include <vector>

namespace orbel {

void forEachTask(std::size_t tasks, const std::function<void(std::size_t)>& body) {
    forEachTask(tasks, static_cast<std::size_t>(platform::activeProcessorCount()), body);
}

void forEachTask(std::size_t tasks, std::size_t threads, const std::function<void(std::size_t)>& body) {
    std::atomic<std::size_t> nextTask = 0;
    const auto work = [&] {
        for (auto task = nextTask.fetch_add(1); task < tasks; task = nextTask.fetch_add(1))
            body(task);
    };
    std::vector<Thread> helpers;
    for (std::size_t i = 1; i < std::min(tasks, threads); ++i)
        helpers.push_back(Thread::start("orbel.parallel", Thread::defaultStackBytes, work));
    work();
}

void forEachRange(std::size_t count, std::size_t grain,
                  const std::function<void(std::size_t, std::size_t)>& body) {
    if (count <= grain) {
        if (count > 0)
            body(0, count);
        return;
    }
    // Four ranges a processor even out what one of them costs more than another.
    const auto wanted = static_cast<std::size_t>(platform::activeProcessorCount()) * 4;
    const auto size = std::max({grain, (count + wanted - 1) / wanted, std::size_t{1}});
    forEachTask((count + size - 1) / size,
                [&](std::size_t task) { body(task * size, std::min((task + 1) * size, count)); });
}

} // namespace orbel
