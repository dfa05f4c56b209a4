#pragma once

#include "Find/DuplicateFinder.h"

#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

namespace orbel {

class ContentComparison;

/// One search among candidates of a tree, which must outlive it. Used once.
///
/// First all files are sampled, then the sample groups are compared, the largest files first, both by more
/// threads than there are processors: a cold disk answers faster the more it is asked at once. What is found
/// does not depend on the threads.
class DuplicateSearch {
public:
    DuplicateSearch(const FileTree& tree, std::vector<NodeIndex> candidates,
                    const DuplicateFinder::Progress& progress,
                    const DuplicateFinder::IsCancelled& isCancelled);

    std::vector<DuplicateGroup> run();

private:
    /// A file of which at least one other has the size. Paths are made when they are needed: they are what
    /// would take most memory.
    struct File {
        NodeIndex node = 0;
        FileStamp stamp{};
        std::optional<std::size_t> sample{}; ///< hash of its sample; absent for a file that was dropped
    };
    /// All files of one size: `files_[begin]` to `files_[end - 1]`.
    struct Size {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t comparisonsLeft = 0;
        std::int64_t groupsFound = 0;
    };
    /// Files of one size with the same sample, and what became of them.
    struct Comparison {
        std::size_t size; ///< in `sizes_`
        std::vector<std::size_t> files;
        std::vector<DuplicateGroup> groups{};
    };

    void keepSharedSizes(std::vector<NodeIndex> candidates);
    void sample(File& file) const;
    void planComparisons();
    void compareAll();
    void compare(Comparison& comparison, ContentComparison& reader) const;
    void finish(const Comparison& comparison);
    void reportFinishedSizes();
    std::uint64_t totalBytes(const Size& size) const;
    bool isCancelled() const { return isCancelled_ && isCancelled_(); }

    const FileTree& tree_;
    const DuplicateFinder::Progress& report_;
    const DuplicateFinder::IsCancelled& isCancelled_;
    std::vector<File> files_;             ///< the largest first, equal ones in the order of the candidates
    std::vector<Size> sizes_;             ///< the largest first
    std::vector<Comparison> comparisons_; ///< by size, then by first file

    std::mutex finishing_;         ///< guards what follows, and the counts in `sizes_` during compareAll()
    std::size_t nextReported_ = 0; ///< the first of `sizes_` that was not reported
    DuplicateProgress progress_;
};

} // namespace orbel
