#include "Scan/EmptyFolderMask.h"

namespace orbel {

namespace {

constexpr NodeFlags unknownContents = NodeFlags::unreadable | NodeFlags::dataless | NodeFlags::otherVolume;

bool mayLieInEmptyFolder(const FileTree& tree, NodeIndex node) {
    return tree.nameBytes(node) == ".DS_Store"
           && !tree.flags(node).intersects(NodeFlags::folder | NodeFlags::symlink | unknownContents);
}

} // namespace

std::vector<bool> emptyFolderMask(const FileTree& tree) {
    // Every folder counts as empty until something inside says otherwise. Children come after their parents,
    // so each node is settled by the time it is reached from the end.
    std::vector<bool> mask(tree.count(), false);
    for (NodeIndex i = 0; i < tree.count(); ++i)
        mask[i] = tree.isFolder(i) && !tree.flags(i).intersects(unknownContents)
                  && !tree.unlistedEntries.contains(i);
    for (auto i = static_cast<NodeIndex>(tree.count()); i-- > 1;) {
        if (tree.parentIndex[i] != FileTree::noParent && !mask[i] && !mayLieInEmptyFolder(tree, i))
            mask[tree.parentIndex[i]] = false;
    }
    return mask;
}

} // namespace orbel
