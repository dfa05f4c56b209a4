#pragma once

#include "Scan/FileTree.h"
#include "Scan/ScanCancellation.h"
#include "Scan/ScanProgress.h"

#include <chrono>
#include <optional>
#include <string>

namespace orbel {

/// Measures one folder tree with several threads. Directories are listed, files never opened,
/// links never followed.
class Walker {
public:
    struct Result {
        FileTree tree;          ///< finalised
        bool cancelled = false; ///< stopped before it finished; the tree holds what was found
    };

    /// Walks `root` and blocks until that is done or cancelled.
    ///
    /// `workers`: threads "orbel.walker.{n}" at most, at least 1; absent means the platform's default. A
    /// thread is started only when there is work that no other one would take at once. `progress`, which may
    /// be empty, is called on this thread every `progressInterval` and once at the end, with no lock held.
    ///
    /// Nothing fails as a whole: what cannot be read is flagged and counted, a root that cannot be asked for
    /// gives an empty tree. The set of nodes, their order, every total and count do not depend on the number
    /// of workers or on their timing: a folder's entries stand together in the order in which the file system
    /// lists them, and folder follows folder depth first.
    static Result walk(const std::string& root, std::optional<int> workers,
                       const ScanCancellation& cancellation, std::chrono::duration<double> progressInterval,
                       const ScanProgressCallback& progress, const Exclusions& exclusions = {});

    static constexpr std::size_t workerStackBytes = 1024 * 1024;
};

} // namespace orbel
