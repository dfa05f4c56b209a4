#pragma once

#include "Scan/FileTree.h"
#include "Util/Iso8601.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// What is kept of a complete scan, so that the next one of the same root can be compared with it: the
/// folders that weigh most, not the tree. A plain value.
struct ScanSummary {
    struct Folder {
        std::string path;        ///< below the root, without a leading slash; the root's own is empty
        std::uint64_t bytes = 0; ///< allocated bytes of all that is in it
        std::size_t parent = 0;  ///< index of the folder that holds it; the root has its own, 0

        bool operator==(const Folder&) const = default;
    };

    static constexpr std::size_t mostFolders = 4000;
    static constexpr std::uint64_t smallestBytes = 100'000; ///< lighter folders are never in it
    static constexpr int deepestLevel = 8;                  ///< folders this far below the root are the last

    std::string root; ///< the path that was walked
    Date measuredAt{};
    /// Every folder of at least so many bytes is in it, as far as it lies within the deepest level, in no
    /// package, and has a path that is valid UTF-8.
    std::uint64_t completeFrom = 0;
    /// The root first, each folder behind the one that holds it; never more than that one in bytes, and never
    /// more together than it.
    std::vector<Folder> folders;

    /// What the scan was told to leave out, ascending: folders inside the root, as in Folder::path, and
    /// patterns. Summaries from before this was kept have none.
    std::vector<std::string> excludedFolders{};
    std::vector<std::string> excludedPatterns{};

    bool operator==(const ScanSummary&) const = default;

    /// Absent when there is nothing that could be compared: the root is no folder, could not be read, or
    /// has a path that is not valid UTF-8. Visits only the folders that it takes, and what weighs as
    /// much beside them.
    static std::optional<ScanSummary> of(const FileTree& tree, Date measuredAt);
};

} // namespace orbel
