#pragma once

#include <string>
#include <vector>

namespace orbel::platform {

struct RunningProgram {
    int pid = 0;
    std::string name{};               ///< raw bytes
    std::vector<std::string> paths{}; ///< its program file and, where known, the scripts it was started with

    bool operator==(const RunningProgram&) const = default;
};

/// What every other process runs, by pid; those that may not be looked at are left out. Touches none
/// of the files.
std::vector<RunningProgram> runningPrograms();

} // namespace orbel::platform
