#pragma once

#include "Scan/FileTree.h"

#include <chrono>
#include <optional>

namespace orbel {

/// What one scan gives. A plain value.
struct ScanResult {
    FileTree tree;
    bool cancelled = false; ///< stopped before it finished; the tree holds what was found so far
    std::chrono::system_clock::time_point startedAt;
    std::optional<double> firstProgress; ///< seconds from the start to the first report with an entry
    double duration = 0;                 ///< seconds
};

} // namespace orbel
