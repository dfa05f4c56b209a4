#include "Compare/GrownFolders.h"

#include <algorithm>

namespace orbel {

namespace {

constexpr std::uint64_t leastBytes = GrownFolder::leastBytes;

std::uint64_t excess(std::uint64_t more, std::uint64_t less) {
    return more > less ? more - less : 0;
}

/// What is known of a folder that is large enough to be listed.
struct Growing {
    NodeIndex node = 0;
    std::size_t holder = 0;   ///< place of the folder that holds it; the root has its own
    std::uint64_t net = 0;    ///< by how much it grew
    std::uint64_t gross = 0;  ///< the same without subtracting what shrank in it
    std::uint64_t listed = 0; ///< how much of it is listed by folders in it
    bool mayBeListed = false; ///< apart from what holds it
};

/// The root and, behind the one that holds them, all folders of the least size. Packages are not entered.
std::vector<Growing> largeFolders(const ScanComparison& comparison, const FileTree& before,
                                  const FileTree& after) {
    std::vector<Growing> folders{{}};
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const auto node = folders[i].node;
        const auto counterpart = comparison.counterparts[node];
        const auto was = counterpart == FileTree::noParent ? 0 : before.allocated(counterpart);
        if (comparison.isComparable(node))
            folders[i].net = excess(after.allocated(node), was);
        if (i > 0 && after.flags(node).contains(NodeFlags::package))
            continue;
        for (const NodeIndex child : after.children(node)) {
            if (after.allocated(child) < leastBytes)
                break; // the largest come first
            if (after.isFolder(child))
                folders.push_back({.node = child, .holder = i});
        }
    }
    return folders;
}

} // namespace

std::vector<GrownFolder> grownFolders(const ScanComparison& comparison, const FileTree& before,
                                      const FileTree& after) {
    auto folders = largeFolders(comparison, before, after);
    for (std::size_t i = folders.size(); i-- > 0;) {
        folders[i].gross = std::max(folders[i].gross, folders[i].net);
        if (i > 0)
            folders[folders[i].holder].gross += folders[i].gross;
    }
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const auto& holder = folders[folders[i].holder];
        folders[i].mayBeListed = i == 0
                                 || (holder.mayBeListed && folders[i].gross >= leastBytes
                                     && folders[i].gross >= holder.gross / 20);
    }

    std::vector<GrownFolder> grown;
    for (std::size_t i = folders.size(); i-- > 0;) {
        auto& folder = folders[i];
        const auto own = excess(folder.net, folder.listed);
        if (folder.mayBeListed && own >= leastBytes && own >= folder.net / 10) {
            grown.push_back({.node = folder.node, .grownBytes = own});
            folder.listed = std::max(folder.listed, folder.net);
        }
        if (i > 0)
            folders[folder.holder].listed += folder.listed;
    }
    std::ranges::sort(grown, [&](const GrownFolder& a, const GrownFolder& b) {
        return a.grownBytes != b.grownBytes ? a.grownBytes > b.grownBytes
                                            : after.walkedPath(a.node) < after.walkedPath(b.node);
    });
    grown.resize(std::min(grown.size(), GrownFolder::mostFolders));
    return grown;
}

} // namespace orbel
