#include "Find/DuplicateFinder.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"

#include <algorithm>
#include <optional>

namespace orbel {

namespace {

constexpr NodeFlags neverRead =
    NodeFlags::folder | NodeFlags::symlink | NodeFlags::dataless | NodeFlags::linkCountedElsewhere;

bool isNeverEntered(std::string_view folderName) {
    return folderName.starts_with('.') || folderName == "node_modules" || isPackage(folderName);
}

/// Where the search begins.
struct Start {
    NodeIndex node;
    bool isHome;
};

std::optional<Start> startIn(const FileTree& tree, const std::string& home) {
    if (tree.count() == 0)
        return std::nullopt;
    if (const auto node = tree.index(home, PathCanonicalizer::shared()))
        return Start{.node = *node, .isHome = true};
    const auto root = tree.path(0, PathCanonicalizer::shared());
    if (!isPathInside(root, home))
        return std::nullopt;
    const auto below = std::string_view(root).substr(home.size());
    if (isPathInside(below, "/Library") || std::ranges::any_of(pathComponents(below), isNeverEntered))
        return std::nullopt;
    return Start{.node = 0, .isHome = false};
}

} // namespace

std::optional<std::string> DuplicateFinder::searchedFolder(const FileTree& tree, const std::string& home) {
    const auto start = startIn(tree, home);
    if (!start)
        return std::nullopt;
    return tree.path(start->node, PathCanonicalizer::shared());
}

std::vector<NodeIndex> DuplicateFinder::candidates(const FileTree& tree, const std::string& home) const {
    std::vector<NodeIndex> found;
    const auto start = startIn(tree, home);
    if (!start)
        return found;
    // The last one is visited next, so children are put there from the last to the first.
    std::vector<NodeIndex> waiting;
    const auto putChildren = [&](NodeIndex folder) {
        const auto children = tree.children(folder);
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    };
    putChildren(start->node);
    while (!waiting.empty()) {
        const NodeIndex node = waiting.back();
        waiting.pop_back();
        const auto name = tree.nameBytes(node);
        if (tree.isFolder(node)) {
            const bool isLibrary = start->isHome && name == "Library" && tree.parent(node) == start->node;
            if (!isNeverEntered(name) && !isLibrary && !tree.flags(node).contains(NodeFlags::package))
                putChildren(node);
        } else if (!name.starts_with('.') && !tree.flags(node).intersects(neverRead) && !tree.isExcluded(node)
                   && tree.logical(node) >= minimumBytes) {
            found.push_back(node);
        }
    }
    return found;
}

} // namespace orbel
