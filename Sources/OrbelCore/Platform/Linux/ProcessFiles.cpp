#include "Platform/ProcessFiles.h"

#include "Platform/Linux/UsedFiles.h"
#include "Platform/Parallel.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

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

/// What some of the processes use.
struct Part {
    ProcessFiles files;
    std::unordered_set<std::uint64_t> heldSockets;
};

/// The own process is left out, save for the sockets that it holds.
Part partOf(std::span<const int> pids, const SocketFiles& sockets) {
    Part part;
    UsedFiles used(&sockets);
    for (const int pid : pids) {
        ProcessInfo process{.pid = pid};
        const auto outcome = used.ofProcess(std::to_string(pid), process);
        if (pid == ::getpid())
            continue;
        if (outcome == UsedFiles::Outcome::unreadable)
            ++part.files.unchecked;
        if (outcome != UsedFiles::Outcome::gone && !process.files.empty())
            part.files.processes.push_back(std::move(process));
    }
    part.heldSockets = used.heldSockets();
    return part;
}

void addUse(ProcessFiles& found, const char* name, std::vector<UsedFile> files) {
    if (!files.empty())
        found.processes.push_back({.pid = 0, .name = name, .files = std::move(files)});
}

} // namespace

ProcessFiles processFiles() {
    ProcessFiles found;
    const UsedFiles system;
    const auto sockets = system.ofSockets();
    auto unheld = sockets;
    const auto pids = processNumbers();
    // The first process is always there. Where it does not show, /proc hides the processes of others, or all:
    // how many there are cannot be known, but that there are some must not go unsaid.
    if (!std::ranges::binary_search(pids, 1))
        ++found.unchecked;

    std::mutex merging;
    forEachRange(pids.size(), 32, [&](std::size_t begin, std::size_t end) {
        Part part = partOf(std::span(pids).subspan(begin, end - begin), sockets);
        const std::scoped_lock lock(merging);
        found.unchecked += part.files.unchecked;
        std::ranges::move(part.files.processes, std::back_inserter(found.processes));
        for (const auto socket : part.heldSockets)
            unheld.erase(socket);
    });
    std::vector<UsedFile> listening;
    for (auto& [inode, file] : unheld)
        listening.push_back(std::move(file));
    addUse(found, "loop device", system.ofLoopDevices());
    // The socket of a process that may not be looked at.
    addUse(found, "another program", std::move(listening));
    std::ranges::stable_sort(found.processes, {}, &ProcessInfo::pid);
    return found;
}

} // namespace orbel::platform
