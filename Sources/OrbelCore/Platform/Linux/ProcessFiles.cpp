#include "Platform/ProcessFiles.h"

#include "Platform/Linux/UsedFiles.h"
#include "Util/Parallel.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>

#include <dirent.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

/// Every process that shows itself, ascending.
std::vector<int> processNumbers() {
    std::vector<int> pids;
    const std::unique_ptr<DIR, CloseDirectory> listing(::opendir("/proc"));
    while (const dirent* const entry =
               listing ? ::readdir(listing.get()) : nullptr) { // NOLINT(concurrency-mt-unsafe)
        const std::string_view name(entry->d_name);
        int pid = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
        if (error == std::errc{} && end == name.data() + name.size())
            pids.push_back(pid);
    }
    std::ranges::sort(pids);
    return pids;
}

/// What these processes use; the own one is left out.
ProcessFiles filesOf(std::span<const int> pids) {
    ProcessFiles found;
    UsedFiles used;
    for (const int pid : pids) {
        if (pid == ::getpid())
            continue;
        ProcessInfo process{.pid = pid};
        const auto outcome = used.ofProcess(std::to_string(pid), process);
        if (outcome == UsedFiles::Outcome::unreadable)
            ++found.unchecked;
        if (outcome != UsedFiles::Outcome::gone && !process.files.empty())
            found.processes.push_back(std::move(process));
    }
    return found;
}

} // namespace

ProcessFiles processFiles() {
    ProcessFiles found;
    if (ProcessInfo system{.pid = 0, .name = "loop device", .files = UsedFiles().ofLoopDevices()};
        !system.files.empty())
        found.processes.push_back(std::move(system));
    const auto pids = processNumbers();
    // The first process is always there. Where it does not show, /proc hides the processes of others, or all:
    // how many there are cannot be known, but that there are some must not go unsaid.
    if (!std::ranges::binary_search(pids, 1))
        ++found.unchecked;

    std::mutex merging;
    forEachRange(pids.size(), 32, [&](std::size_t begin, std::size_t end) {
        ProcessFiles part = filesOf(std::span(pids).subspan(begin, end - begin));
        const std::scoped_lock lock(merging);
        found.unchecked += part.unchecked;
        std::ranges::move(part.processes, std::back_inserter(found.processes));
    });
    std::ranges::sort(found.processes, {}, &ProcessInfo::pid);
    return found;
}

} // namespace orbel::platform
