#include "AppModel/ScanOutcome.h"

#include "Models/FreedAside.h"
#include "Models/UnreadableModel.h"
#include "Models/Wording.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"

#include <algorithm>
#include <queue>

namespace orbel {

namespace {

constexpr std::size_t mostLargestFolders = 10;

std::string shownPath(const FileTree& tree, NodeIndex node) {
    return tree.path(node, PathCanonicalizer::shared());
}

std::vector<std::string> unreadablePaths(const FileTree& tree) {
    std::vector<std::string> paths;
    for (NodeIndex node = 0; node < tree.count() && paths.size() < UnreadableModel::mostRows; ++node) {
        if (NodeFlags{tree.nodeFlags[node]}.contains(NodeFlags::unreadable))
            paths.push_back(shownPath(tree, node));
    }
    std::ranges::sort(paths);
    return paths;
}

/// `totals`: of each of the folders.
std::vector<SizedFolder> sizedFolders(const FileTree& tree, const std::vector<NodeIndex>& nodes,
                                      const std::vector<KindTotals>& totals, const std::string& home) {
    std::vector<SizedFolder> folders;
    folders.reserve(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i)
        folders.push_back({.node = nodes[i],
                           .path = textOf(tildePath(shownPath(tree, nodes[i]), home)),
                           .kind = static_cast<int>(mainKind(totals[i])),
                           .bytes = tree.allocated(nodes[i])});
    return folders;
}

/// Whether a few folders in it tell more than the folder itself: three quarters of it are in folders of a
/// twentieth or more.
bool isDivided(const FileTree& tree, NodeIndex folder) {
    std::uint64_t inWeightyFolders = 0;
    for (const NodeIndex child : tree.children(folder)) {
        if (tree.isFolder(child) && tree.allocated(child) >= tree.allocated(folder) / 20)
            inWeightyFolders += tree.allocated(child);
    }
    return inWeightyFolders >= tree.allocated(folder) / 4 * 3;
}

} // namespace

ScanOutcome scanOutcome(ScanResult result, const DiskReader& reader, const std::string& home) {
    const bool hasRoot = result.tree.count() > 0;
    auto origin = hasRoot ? ScanOrigin::ofHere(result) : ScanOrigin();
    auto outcome = treeOutcome(std::move(result), reader.trashedItems(), home);
    outcome.origin = std::move(origin);
    outcome.disk = reader.read(outcome.tree->rootPath);
    return outcome;
}

ScanOutcome treeOutcome(ScanResult result, const std::string& trashedItems, const std::string& home) {
    ScanOutcome outcome;
    outcome.cancelled = result.cancelled;
    outcome.finishedAt = std::chrono::system_clock::now();
    outcome.duration = result.duration;
    if (result.tree.count() > 0) {
        const auto largest = tellingFolders(result.tree, mostLargestFolders);
        auto totals = ContentTotals::of(result.tree, largest);
        outcome.kinds = totals.kinds;
        outcome.extensions = std::move(totals.extensions);
        outcome.largestFolders = sizedFolders(result.tree, largest, totals.folders, home);
        const auto trash = trashedItems.empty()
                               ? std::nullopt
                               : result.tree.index(trashedItems, PathCanonicalizer::shared());
        if (trash)
            outcome.trashedKinds = kindTotals(result.tree, *trash);
        outcome.unreadable = unreadablePaths(result.tree);
    }
    outcome.tree = sharedTree(std::move(result.tree));
    return outcome;
}

std::shared_ptr<const FileTree> sharedTree(FileTree tree) {
    // Giving back the memory of ten million nodes takes a tenth of a second: too long for the main thread.
    constexpr std::size_t quicklyFreed = 100'000;
    const bool isLarge = tree.count() > quicklyFreed;
    return freedAside(std::make_unique<const FileTree>(std::move(tree)), isLarge);
}

std::vector<NodeIndex> tellingFolders(const FileTree& tree, std::size_t most) {
    constexpr int deepestDivision = 3; // "/home/name/folder" is told, what is in that is for the map
    struct Candidate {
        std::uint64_t bytes;
        NodeIndex node;
        int depth;
        bool operator<(const Candidate& other) const {
            return bytes != other.bytes ? bytes < other.bytes : node > other.node;
        }
    };
    std::vector<NodeIndex> telling;
    if (tree.count() == 0 || !tree.isFolder(0))
        return telling;
    std::priority_queue<Candidate> open;
    const auto addFoldersIn = [&](NodeIndex folder, int depth) {
        for (const NodeIndex child : tree.children(folder)) {
            if (tree.isFolder(child) && tree.allocated(child) > 0)
                open.push({tree.allocated(child), child, depth});
        }
    };
    addFoldersIn(0, 1);
    while (!open.empty() && telling.size() < most) {
        const auto [bytes, node, depth] = open.top();
        open.pop();
        const bool isPackage = tree.flags(node).contains(NodeFlags::package);
        if (depth < deepestDivision && !isPackage && isDivided(tree, node))
            addFoldersIn(node, depth + 1);
        else
            telling.push_back(node);
    }
    return telling;
}

} // namespace orbel
