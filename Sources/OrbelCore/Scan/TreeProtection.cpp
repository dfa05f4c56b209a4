#include "Safety/NeverTouch.h"
#include "Safety/ProtectedContent.h"
#include "Scan/FileTree.h"
#include "Scan/FolderShapes.h"

#include <algorithm>

namespace orbel {

void FileTree::markProtectedData() {
    protectedNodes = nodesNamed(*this, [](std::string_view name) {
        return NeverTouch::isProtectedName(name) || ProtectedContent::meaningOf(name);
    });
    for (const auto& [node, shape] : shapedFolders(*this))
        if (shape->isProtected && node != 0)
            protectedNodes.push_back(node);
    std::erase_if(protectedNodes, [this](NodeIndex node) {
        return !NeverTouch::isProtectedName(nameBytes(node))
               && ProtectedContent::isTestData(walkedPath(holderOf(node)));
    });
    std::ranges::sort(protectedNodes);
    const auto [first, last] = std::ranges::unique(protectedNodes);
    protectedNodes.erase(first, last);

    // Also what a detached node was taken from: it may come back.
    for (NodeIndex node : protectedNodes)
        while (protectedContainers.insert(node).second && node != 0)
            node = holderOf(node);
}

std::optional<NodeIndex> FileTree::protectedInside(NodeIndex node) const {
    requireNode(node);
    if (!containsProtectedData(node))
        return std::nullopt;
    const auto isInside = [&](NodeIndex i) {
        while (i != node && i != 0)
            i = holderOf(i);
        return i == node;
    };
    const auto found = std::ranges::find_if(protectedNodes, isInside);
    return found == protectedNodes.end() ? std::nullopt : std::optional(*found);
}

} // namespace orbel
