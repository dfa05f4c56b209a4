#pragma once

#include "Delete/InUse.h"
#include "Delete/ProcessUse.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orbel {

/// Who uses the files of a list. It shows; what decides about a move is `inUse`, asked right before it.
struct InUseChecker {
    InUseChecker() = delete;

    /// One snapshot, prepared for many questions. Immutable; may be asked by any thread.
    class OpenFiles {
    public:
        /// No process uses anything.
        OpenFiles() = default;
        explicit OpenFiles(const MappedFilesSnapshot& snapshot);

        /// The processes that use the file of this identity, or of this path where a process tells no more;
        /// of a package (a folder that counts as one item) also those that use anything inside `path`, as
        /// far as it goes by that name. By pid, each once. `path`: real, in visible form.
        std::vector<ProcessUse> users(const FileIdentity& identity, const std::string& path,
                                      bool isPackage) const;

    private:
        using Process = std::size_t; ///< an index into processes_

        std::vector<ProcessUse> processes_;
        std::unordered_map<FileIdentity, std::vector<Process>> byIdentity_;
        std::vector<std::pair<std::string, Process>> byPath_; ///< sorted
    };
};

} // namespace orbel
