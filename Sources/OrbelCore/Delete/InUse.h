#pragma once

#include "Delete/ProcessUse.h"
#include "Platform/ProcessFiles.h"
#include "Safety/FileStamp.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace orbel {

/// Which files every process used at one moment.
struct MappedFilesSnapshot {
    std::chrono::system_clock::time_point takenAt; ///< before the first process was looked at
    platform::ProcessFiles processes;
    /// Hashes of the identities and of the paths of all their files: what has neither is used by none of
    /// them. Null: every file is compared.
    std::shared_ptr<const std::unordered_set<std::size_t>> known{};
};

/// Who uses an item, as far as that could be found out.
struct InUseReport {
    std::vector<ProcessUse> users;     ///< by pid
    int uncheckedProcesses = 0;        ///< processes that could not be looked at; they may use it too
    std::optional<std::string> reason; ///< see useReason(); absent when no process is known to use the item
};

/// "In use by …" for the user to read: each program once, in the order given; beyond three their number.
/// Absent without users.
std::optional<std::string> useReason(const std::vector<ProcessUse>& users);

/// Looks at every process. This process and the kernel's own are left out.
MappedFilesSnapshot takeMappedSnapshot();

/// Whether a process of the snapshot has the item open or mapped, works in it or runs from it; of a folder,
/// anything inside it, also by another name. `path` is the item's real path, `stamp` what was captured of it.
/// Walks a folder.
InUseReport inUse(const std::string& path, const FileStamp& stamp, const MappedFilesSnapshot& snapshot);

} // namespace orbel
