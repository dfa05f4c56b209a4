#include "Scan/FileTree.h"

#include <algorithm>
#include <iterator>

namespace orbel {

void FileTree::remove(std::span<const NodeIndex> gone) {
    bool detachedAny = false;
    for (const NodeIndex node : gone) {
        if (node == 0 || node >= count() || parentIndex[node] == noParent)
            continue;
        detachedFrom[node] = parentIndex[node];
        parentIndex[node] = noParent;
        detachedAny = true;
    }
    if (!detachedAny)
        return;
    assignHardLinkOwners();
    recomputeTotals();
}

void FileTree::restore(std::span<const NodeIndex> back) {
    bool attachedAny = false;
    for (const NodeIndex node : back) {
        const auto held = detachedFrom.find(node);
        if (held == detachedFrom.end())
            continue;
        parentIndex[node] = held->second;
        detachedFrom.erase(held);
        attachedAny = true;
    }
    if (!attachedAny)
        return;
    assignHardLinkOwners();
    recomputeTotals();
}

/// The bytes of a group whose owner left move to a link that stays, and back when it returns.
void FileTree::assignHardLinkOwners() {
    std::vector<NodeIndex> attached;
    for (const auto& [file, members] : hardLinkMembers) {
        attached.clear();
        std::ranges::copy_if(members, std::back_inserter(attached),
                             [this](NodeIndex member) { return isAttached(member); });
        if (!attached.empty())
            assignHardLinkOwner(file, attached);
    }
}

} // namespace orbel
