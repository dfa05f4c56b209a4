#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orbel::platform {

/// A file or folder that a process uses: open, mapped, worked in or run.
struct UsedFile {
    std::uint64_t device = 0; ///< as FileStatus::device
    std::uint64_t inode = 0;  ///< 0 when only the path is known
    std::string path{};       ///< absolute, in raw bytes; empty when it has no name any more

    bool operator==(const UsedFile&) const = default;
};

struct ProcessInfo {
    int pid = 0;        ///< 0 for what the system itself uses
    std::string name{}; ///< of the program, raw bytes
    std::vector<UsedFile> files{};
};

struct ProcessFiles {
    std::vector<ProcessInfo> processes; ///< by pid; those that use nothing are left out
    /// Processes that could not be looked at, in full or in part. At least so many: where the system hides
    /// the processes of others, all of those count as one.
    int unchecked = 0;
};

/// The files that every other process uses. The kernel's own processes are left out, and counted nowhere. No
/// file on a network file system is touched, because a dead server would block the call: of such files only
/// the path is known.
ProcessFiles processFiles();

} // namespace orbel::platform
