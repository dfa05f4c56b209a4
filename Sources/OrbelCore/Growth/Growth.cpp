#include "Growth/Growth.h"

#include "Util/PathText.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_map>

namespace orbel {

namespace {

std::uint64_t excess(std::uint64_t more, std::uint64_t less) {
    return more > less ? more - less : 0;
}

/// What is known of a folder's change.
struct Change {
    std::uint64_t before = 0;  ///< the most that it can have weighed
    std::uint64_t unnamed = 0; ///< how much of that can have been in folders that the summary does not name
    std::uint64_t least = 0;   ///< by how much it grew, all in all, at least
    std::uint64_t most = 0;    ///< and at most
    std::uint64_t gross = 0;   ///< the same as `least`, without subtracting what shrank in it
    std::uint64_t listed = 0;  ///< how much of it is listed by folders in it, at most
    bool mayBeListed = false;  ///< it, or what is in it, may be listed apart from what holds it
};

/// Whether only one of two scans left out the folder, something in it, or what holds it.
class DifferentlyExcluded {
public:
    DifferentlyExcluded(const ScanSummary& before, const ScanSummary& after) {
        std::ranges::set_symmetric_difference(before.excludedFolders, after.excludedFolders,
                                              std::back_inserter(paths_));
    }

    bool concerns(const std::string& folder) const {
        return std::ranges::any_of(paths_, [&](const std::string& path) {
            return folder.empty() || isPathInside(path, folder) || isPathInside(folder, path);
        });
    }

private:
    std::vector<std::string> paths_;
};

std::vector<Change> changes(const ScanSummary& before, const ScanSummary& after) {
    struct Named {
        std::uint64_t bytes;
        std::uint64_t unnamed;
    };
    std::unordered_map<std::string_view, Named> earlier;
    for (const auto& folder : before.folders) {
        earlier.emplace(folder.path, Named{.bytes = folder.bytes, .unnamed = folder.bytes});
        if (!folder.path.empty())
            earlier.at(before.folders[folder.parent].path).unnamed -= folder.bytes;
    }

    const DifferentlyExcluded different(before, after);
    const auto& folders = after.folders;
    std::vector<Change> all(folders.size());
    for (std::size_t i = 0; i < folders.size(); ++i) {
        auto& change = all[i];
        const auto bytes = folders[i].bytes;
        if (const auto named = earlier.find(folders[i].path); named != earlier.end()) {
            change.before = named->second.bytes;
            change.unnamed = named->second.unnamed;
            change.most = excess(bytes, change.before);
        } else {
            change.before = std::min(all[folders[i].parent].unnamed, excess(before.completeFrom, 1));
            change.unnamed = change.before;
            change.most = bytes;
        }
        change.least = excess(bytes, change.before);
        if (different.concerns(folders[i].path))
            change.least = change.most = 0;
    }
    return all;
}

} // namespace

Growth Growth::between(const ScanSummary& before, const ScanSummary& after) {
    const auto& folders = after.folders;
    auto all = changes(before, after);
    // From the last to the first, every folder comes before the one that holds it.
    for (std::size_t i = folders.size(); i-- > 0;) {
        all[i].gross = std::max(all[i].gross, all[i].least);
        if (i > 0)
            all[folders[i].parent].gross += all[i].gross;
    }
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const auto& parent = all[folders[i].parent];
        all[i].mayBeListed =
            i == 0 || (parent.mayBeListed && all[i].gross >= leastBytes && all[i].gross >= parent.gross / 20);
    }

    Growth growth{.since = before.measuredAt, .folders = {}};
    for (std::size_t i = folders.size(); i-- > 0;) {
        auto& change = all[i];
        const auto own = excess(change.least, change.listed);
        if (change.mayBeListed && own >= leastBytes && own >= change.least / 10) {
            growth.folders.push_back({.path = i == 0 ? after.root : joinedPath(after.root, folders[i].path),
                                      .grownBytes = own,
                                      .bytes = folders[i].bytes});
            change.listed = std::max(change.listed, change.most);
        }
        if (i > 0)
            all[folders[i].parent].listed += change.listed;
    }
    std::ranges::sort(growth.folders, [](const GrownFolder& a, const GrownFolder& b) {
        return a.grownBytes != b.grownBytes ? a.grownBytes > b.grownBytes : a.path < b.path;
    });
    growth.folders.resize(std::min(growth.folders.size(), mostFolders));
    return growth;
}

} // namespace orbel
