#include "Platform/ProcessFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <libproc.h>
#include <string_view>

#include <sys/proc_info.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

/// Asks for the regions of a process that are mapped from files, and for those only. The published header
/// stops short of it.
constexpr int fileRegionInfo = 22; // PROC_PIDREGIONPATHINFO2

/// The processes that there are, ascending.
std::vector<int> processNumbers() {
    std::vector<int> pids;
    int count = ::proc_listallpids(nullptr, 0);
    // Some may start in between: a full answer may be cut off.
    while (count > 0 && static_cast<std::size_t>(count) >= pids.size()) {
        pids.resize(static_cast<std::size_t>(count) + 64);
        count = ::proc_listallpids(pids.data(), static_cast<int>(pids.size() * sizeof(int)));
    }
    pids.resize(static_cast<std::size_t>(std::max(count, 0)));
    std::ranges::sort(pids);
    return pids;
}

void add(const vnode_info_path& node, std::vector<UsedFile>& files) {
    const auto& status = node.vip_vi.vi_stat;
    UsedFile file{.device = status.vst_dev, .inode = status.vst_ino};
    // Of a path that is too long only the end is told.
    if (node.vip_path[0] == '/')
        file.path.assign(node.vip_path, ::strnlen(node.vip_path, sizeof node.vip_path));
    if (file.inode != 0 || !file.path.empty())
        files.push_back(std::move(file));
}

enum class Outcome : std::uint8_t { checked, unreadable, gone };

/// What a failed call says of a process: only that it is not there any more excuses from looking at it.
Outcome outcomeOf(int error) {
    return error == ESRCH ? Outcome::gone : Outcome::unreadable;
}

Outcome addOpenFiles(int pid, std::vector<UsedFile>& files) {
    std::vector<proc_fdinfo> descriptors;
    int bytes = ::proc_pidinfo(pid, PROC_PIDLISTFDS, 0, nullptr, 0);
    while (bytes > 0 && static_cast<std::size_t>(bytes) >= descriptors.size() * sizeof(proc_fdinfo)) {
        descriptors.resize(static_cast<std::size_t>(bytes) / sizeof(proc_fdinfo) + 32);
        bytes = ::proc_pidinfo(pid, PROC_PIDLISTFDS, 0, descriptors.data(),
                               static_cast<int>(descriptors.size() * sizeof(proc_fdinfo)));
    }
    if (bytes <= 0)
        return outcomeOf(errno);
    descriptors.resize(static_cast<std::size_t>(bytes) / sizeof(proc_fdinfo));
    auto outcome = Outcome::checked;
    for (const auto& descriptor : descriptors) {
        if (descriptor.proc_fdtype != PROX_FDTYPE_VNODE)
            continue;
        vnode_fdinfowithpath info{};
        const int size =
            ::proc_pidfdinfo(pid, descriptor.proc_fd, PROC_PIDFDVNODEPATHINFO, &info, sizeof info);
        if (size == static_cast<int>(sizeof info))
            add(info.pvip, files);
        else if (errno == EPERM || errno == EACCES)
            outcome = Outcome::unreadable;
    }
    return outcome;
}

Outcome addFolders(int pid, std::vector<UsedFile>& files) {
    proc_vnodepathinfo info{};
    if (::proc_pidinfo(pid, PROC_PIDVNODEPATHINFO, 0, &info, sizeof info) != static_cast<int>(sizeof info))
        return outcomeOf(errno);
    add(info.pvi_cdir, files);
    add(info.pvi_rdir, files);
    return Outcome::checked;
}

/// The program itself is among these.
Outcome addMappedFiles(int pid, std::vector<UsedFile>& files) {
    std::uint64_t address = 0;
    while (true) {
        proc_regionwithpathinfo info{};
        if (::proc_pidinfo(pid, fileRegionInfo, address, &info, sizeof info) != static_cast<int>(sizeof info))
            return errno == EPERM || errno == EACCES ? Outcome::unreadable : Outcome::checked;
        const auto before = files.size();
        add(info.prp_vip, files);
        if (files.size() > before && before > 0 && files[before] == files[before - 1])
            files.pop_back(); // one file is mapped in several pieces
        const auto next = info.prp_prinfo.pri_address + info.prp_prinfo.pri_size;
        if (next <= address)
            return Outcome::checked;
        address = next;
    }
}

std::string nameOf(int pid) {
    std::array<char, PROC_PIDPATHINFO_MAXSIZE> path{};
    if (::proc_pidpath(pid, path.data(), path.size()) > 0) {
        const std::string_view text(path.data());
        return std::string(text.substr(text.rfind('/') + 1));
    }
    std::array<char, 256> name{};
    ::proc_name(pid, name.data(), name.size());
    return name.data();
}

} // namespace

ProcessFiles processFiles() {
    ProcessFiles found;
    const auto pids = processNumbers();
    if (pids.empty())
        ++found.unchecked; // there is always one: that none shows must not go unsaid
    for (const int pid : pids) {
        if (pid == 0 || pid == ::getpid()) // 0 is the kernel
            continue;
        ProcessInfo process{.pid = pid, .name = nameOf(pid)};
        const std::array outcomes{addOpenFiles(pid, process.files), addFolders(pid, process.files),
                                  addMappedFiles(pid, process.files)};
        if (std::ranges::count(outcomes, Outcome::gone) > 0)
            continue;
        if (std::ranges::count(outcomes, Outcome::unreadable) > 0)
            ++found.unchecked;
        if (!process.files.empty())
            found.processes.push_back(std::move(process));
    }
    return found;
}

} // namespace orbel::platform
