#pragma once

#include "Find/DuplicateGroup.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orbel {

/// How far a search for duplicates has come.
struct DuplicateProgress {
    std::uint64_t bytesCompared = 0;  ///< of the sizes that are done, size × files of that size
    std::uint64_t bytesToCompare = 0; ///< the same for all sizes that more than one file has
    std::int64_t groupsFound = 0;

    bool operator==(const DuplicateProgress&) const = default;
};

/// Finds files of the home folder that hold the same bytes. Candidates are picked from a finished scan by
/// their sizes, then by a sample of their content; what remains is read in full, all files of a sample side
/// by side, and nothing less than every byte makes two files duplicates.
///
/// There are no errors: a file that is gone, has changed since the scan or cannot be read is passed over.
/// Files are only read; their access times stay where the system allows it.
struct DuplicateFinder {
    /// Called by one thread at a time, any of those that search.
    using Progress = std::function<void(const DuplicateProgress&)>;
    /// Called by several threads at once.
    using IsCancelled = std::function<bool()>;

    static constexpr std::uint64_t defaultMinimumBytes = 1'000'000;

    std::uint64_t minimumBytes = defaultMinimumBytes; ///< smaller files are ignored

    /// The whole search, on this thread and others; blocks. No cloud-only file is fetched to be read, by this
    /// thread not even afterwards. The groups that free most (by `removableBytes`) come first, equal ones by
    /// size, then in the order of the tree. `home` is the home folder's real path in visible form. Progress
    /// comes before the first file is read and after each size, from the largest to the smallest. Cancelled,
    /// it returns the groups that were proved by then. Both functions may be empty.
    std::vector<DuplicateGroup> run(const FileTree& tree, const std::string& home,
                                    const Progress& progress = nullptr,
                                    const IsCancelled& isCancelled = nullptr) const;

    /// The files that may be duplicates by their place, name, flags and size, in the order of the tree's
    /// child lists, depth first. Hidden folders, packages, "node_modules" and the home's "Library" are not
    /// looked into; nothing outside the home is.
    std::vector<NodeIndex> candidates(const FileTree& tree, const std::string& home) const;

    /// The folder that the candidates are looked for in: the home, or the part of it that the tree holds.
    /// Absent when the tree holds nothing of the home that is looked into.
    static std::optional<std::string> searchedFolder(const FileTree& tree, const std::string& home);

    /// Divides files by their content. Clusters come in the order of their first files; a file that equals no
    /// other, or could not be read or is not what its stamp says, has a cluster of its own. Cancelled, it
    /// returns the clusters that were made by then.
    static std::vector<std::vector<DuplicateFile>>
    identicalClusters(std::span<const DuplicateFile> files, const IsCancelled& isCancelled = nullptr);

    /// Whether two regular files hold the same bytes; false when either cannot be read.
    static bool bytesEqual(const std::string& a, const std::string& b);

    /// The path of the newest copy; among equally new ones the shortest path (in characters), then the first
    /// in byte order. `files` must not be empty.
    static std::string suggestKeep(std::span<const DuplicateFile> files);
};

} // namespace orbel
