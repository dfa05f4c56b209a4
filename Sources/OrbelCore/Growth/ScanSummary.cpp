#include "Growth/ScanSummary.h"

#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <queue>
#include <string_view>
#include <utility>

namespace orbel {

namespace {

struct Candidate {
    NodeIndex node;
    std::uint64_t bytes;
    int level;
    std::size_t parent; ///< its place in the summary

    /// The lightest last; of equal ones the folder before what it holds.
    bool operator<(const Candidate& other) const {
        return bytes != other.bytes ? bytes < other.bytes : node > other.node;
    }
};

std::vector<std::string> sortedOnce(std::vector<std::string> texts) {
    std::ranges::sort(texts);
    const auto repeated = std::ranges::unique(texts);
    texts.erase(repeated.begin(), repeated.end());
    return texts;
}

/// Below the root, as text.
std::vector<std::string> excludedFoldersIn(const FileTree& tree) {
    const auto& names = PathCanonicalizer::shared();
    const auto root = tree.path(0, names);
    std::vector<std::string> folders;
    for (const auto& path : tree.exclusions.paths) {
        if (path != root && isPathInside(path, root))
            folders.push_back(lossyUtf8(std::string_view(path).substr(root == "/" ? 1 : root.size() + 1)));
    }
    return sortedOnce(std::move(folders));
}

std::vector<std::string> excludedPatternsIn(const FileTree& tree) {
    std::vector<std::string> patterns;
    patterns.reserve(tree.exclusions.patterns.size());
    for (const auto& pattern : tree.exclusions.patterns)
        patterns.push_back(lossyUtf8(pattern));
    return sortedOnce(std::move(patterns));
}

} // namespace

std::optional<ScanSummary> ScanSummary::of(const FileTree& tree, Date measuredAt) {
    if (tree.count() == 0 || !tree.isFolder(0) || tree.flags(0).contains(NodeFlags::unreadable)
        || !isValidUtf8(tree.rootPath))
        return std::nullopt;
    ScanSummary summary{.root = tree.rootPath,
                        .measuredAt = measuredAt,
                        .completeFrom = smallestBytes,
                        .folders = {},
                        .excludedFolders = excludedFoldersIn(tree),
                        .excludedPatterns = excludedPatternsIn(tree)};
    std::priority_queue<Candidate> open;
    open.push({.node = 0, .bytes = tree.allocated(0), .level = 0, .parent = 0});
    while (!open.empty()) {
        const auto [node, bytes, level, parent] = open.top();
        if (summary.folders.size() == mostFolders) {
            summary.completeFrom = bytes + 1;
            break;
        }
        open.pop();
        const auto place = summary.folders.size();
        summary.folders.push_back(
            {.path =
                 place == 0 ? std::string() : joinedPath(summary.folders[parent].path, tree.nameBytes(node)),
             .bytes = bytes,
             .parent = parent});
        if (level == deepestLevel || tree.flags(node).contains(NodeFlags::package))
            continue;
        for (const NodeIndex child : tree.children(node)) {
            if (tree.allocated(child) < smallestBytes)
                break; // the largest come first
            if (tree.isFolder(child) && isValidUtf8(tree.nameBytes(child)))
                open.push(
                    {.node = child, .bytes = tree.allocated(child), .level = level + 1, .parent = place});
        }
    }
    return summary;
}

} // namespace orbel
