#include "Platform/RunningPrograms.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <libproc.h>
#include <utility>

#include <unistd.h>

namespace orbel::platform {

std::vector<RunningProgram> runningPrograms() {
    std::vector<int> pids;
    int count = ::proc_listallpids(nullptr, 0);
    // Some may start in between: a full answer may be cut off.
    while (count > 0 && static_cast<std::size_t>(count) >= pids.size()) {
        pids.resize(static_cast<std::size_t>(count) + 64);
        count = ::proc_listallpids(pids.data(), static_cast<int>(pids.size() * sizeof(int)));
    }
    pids.resize(static_cast<std::size_t>(std::max(count, 0)));
    std::ranges::sort(pids);
    std::vector<RunningProgram> found;
    for (const int pid : pids) {
        std::array<char, PROC_PIDPATHINFO_MAXSIZE> text{};
        if (pid == ::getpid() || ::proc_pidpath(pid, text.data(), text.size()) <= 0)
            continue;
        std::string path(text.data());
        auto name = path.substr(path.rfind('/') + 1);
        found.push_back({.pid = pid, .name = std::move(name), .paths = {std::move(path)}});
    }
    return found;
}

} // namespace orbel::platform
