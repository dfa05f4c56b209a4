#pragma once

#include "Platform/Linux/Portable/ProcessText.h"
#include "Platform/MountTable.h"
#include "Platform/ProcessFiles.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace orbel::platform {

/// The files of sockets that programs reach by a path, by the socket's inode.
using SocketFiles = std::unordered_map<std::uint64_t, UsedFile>;

/// Finds out which files processes use. What it learns of a mapped file serves for all processes that map it.
/// One thread at a time.
class UsedFiles {
public:
    /// `sockets`: those that count as used by the process that holds them; must live as long as this.
    /// Null for none.
    explicit UsedFiles(const SocketFiles* sockets = nullptr);

    enum class Outcome : std::uint8_t {
        checked,
        unreadable, ///< something of it may not be looked at; what could be is filled in
        gone        ///< it ended meanwhile, or is not a process that counts
    };

    /// Looks at one process.
    Outcome ofProcess(const std::string& pid, ProcessInfo& process);

    /// Which of the sockets the processes that were looked at hold.
    const std::unordered_set<std::uint64_t>& heldSockets() const { return heldSockets_; }

    /// The image files behind loop devices.
    std::vector<UsedFile> ofLoopDevices() const;

    /// The sockets of the system that have a file, as far as it still goes by the path it was made by.
    SocketFiles ofSockets() const;

private:
    Outcome throughLink(int folder, const char* link, std::vector<UsedFile>& files);
    void throughSocket(const std::string& link, std::vector<UsedFile>& files);
    Outcome throughDescriptors(int process, std::vector<UsedFile>& files);
    Outcome throughMappings(int process, std::vector<UsedFile>& files);
    UsedFile fileOf(int process, const MappedFile& mapped) const;
    bool isOnNetwork(const std::string& path) const;

    std::vector<Mount> mounts_;  ///< empty when none is a network's
    const SocketFiles* sockets_; ///< null for none
    std::unordered_set<std::uint64_t> heldSockets_;
    std::unordered_map<std::string, UsedFile> mapped_; ///< by device, inode and path as mappings tell them
};

} // namespace orbel::platform
