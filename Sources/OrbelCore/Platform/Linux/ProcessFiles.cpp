#include "Platform/ProcessFiles.h"

#include "Platform/Linux/UsedFiles.h"

#include <algorithm>
#include <charconv>
#include <memory>
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

} // namespace

ProcessFiles processFiles() {
    ProcessFiles found;
    UsedFiles used;
    if (ProcessInfo system{.pid = 0, .name = "loop device", .files = used.ofLoopDevices()};
        !system.files.empty())
        found.processes.push_back(std::move(system));
    const auto pids = processNumbers();
    // The first process is always there. Where it does not show, /proc hides the processes of others, or all:
    // how many there are cannot be known, but that there are some must not go unsaid.
    if (!std::ranges::binary_search(pids, 1))
        ++found.unchecked;
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

} // namespace orbel::platform
