#pragma once

#include "Find/InstalledApp.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace orbel {

/// The applications that are installed. Not instantiable.
struct AppInventory {
    AppInventory() = delete;

    /// Where this system's applications are found, for the user's home.
    static std::vector<std::string> defaultFolders();

    /// The applications in these folders: those that show themselves by name, then the hidden ones by
    /// path, which are no choice of the user's but may own leftovers. Reads many small files; asks the
    /// system's package manager at most once. `isWritable`: whether this process may write a path; empty
    /// asks the system.
    static std::vector<InstalledApp> scan(std::span<const std::string> folders,
                                          const std::function<bool(const std::string&)>& isWritable = {});
};

} // namespace orbel
