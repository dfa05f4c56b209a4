#include "Find/DuplicateFinder.h"

#include "Find/ContentComparison.h"
#include "Find/DuplicateSearch.h"
#include "Util/Check.h"
#include "Util/Utf8.h"

#include <algorithm>

namespace orbel {

std::vector<DuplicateGroup> DuplicateFinder::run(const FileTree& tree, const std::string& home,
                                                 const Progress& progress,
                                                 const IsCancelled& isCancelled) const {
    return DuplicateSearch(tree, candidates(tree, home), progress, isCancelled).run();
}

std::vector<std::vector<DuplicateFile>>
DuplicateFinder::identicalClusters(std::span<const DuplicateFile> files, const IsCancelled& isCancelled) {
    std::vector<std::vector<DuplicateFile>> clusters;
    ContentComparison comparison(ContentComparison::openFileLimit(1));
    for (const auto& members : comparison.clusters(files, isCancelled)) {
        auto& cluster = clusters.emplace_back();
        for (const std::size_t member : members)
            cluster.push_back(files[member]);
    }
    return clusters;
}

bool DuplicateFinder::bytesEqual(const std::string& a, const std::string& b) {
    const auto stampA = FileStamp::of(a);
    const auto stampB = FileStamp::of(b);
    if (!stampA || !stampB || stampA->size != stampB->size)
        return false;
    const std::vector<DuplicateFile> both{{.path = a, .stamp = *stampA}, {.path = b, .stamp = *stampB}};
    return identicalClusters(both).size() == 1;
}

std::string DuplicateFinder::suggestKeep(std::span<const DuplicateFile> files) {
    ORBEL_CHECK(!files.empty(), "one of no files is to be kept");
    const auto isBetter = [](const DuplicateFile& a, const DuplicateFile& b) {
        if (a.stamp.modifiedNanos != b.stamp.modifiedNanos)
            return a.stamp.modifiedNanos > b.stamp.modifiedNanos;
        const auto lengthA = characterCount(a.path);
        const auto lengthB = characterCount(b.path);
        return lengthA != lengthB ? lengthA < lengthB : a.path < b.path;
    };
    return std::ranges::min_element(files, isBetter)->path;
}

} // namespace orbel
