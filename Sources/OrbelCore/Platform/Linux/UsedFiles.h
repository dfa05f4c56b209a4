#pragma once

#include "Platform/Linux/Portable/ProcessText.h"
#include "Platform/MountTable.h"
#include "Platform/ProcessFiles.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace orbel::platform {

/// Finds out which files processes use. What it learns of a mapped file serves for all processes that map it.
/// One thread at a time.
class UsedFiles {
public:
    UsedFiles();

    enum class Outcome : std::uint8_t {
        checked,
        unreadable, ///< something of it may not be looked at; what could be is filled in
        gone        ///< it ended meanwhile, or is none of the processes that count
    };

    /// Looks at one process.
    Outcome ofProcess(const std::string& pid, ProcessInfo& process);

    /// The image files that loop devices stand on.
    std::vector<UsedFile> ofLoopDevices() const;

private:
    Outcome throughLink(int folder, const char* link, std::vector<UsedFile>& files) const;
    Outcome throughDescriptors(int process, std::vector<UsedFile>& files) const;
    Outcome throughMappings(int process, std::vector<UsedFile>& files);
    UsedFile fileOf(int process, const MappedFile& mapped) const;
    bool isOnNetwork(const std::string& path) const;

    std::vector<Mount> mounts_;                        ///< empty when none is a network's
    std::unordered_map<std::string, UsedFile> mapped_; ///< by device, inode and path as mappings tell them
};

} // namespace orbel::platform
