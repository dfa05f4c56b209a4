#include "Scan/Rescan.h"

#include "Platform/DirectoryReader.h"
#include "Platform/FileStatus.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/RealPath.h"
#include "Scan/MountBoundary.h"
#include "Util/PageArray.h"

#include <cerrno>

namespace orbel {

namespace {

/// Whether nothing is at this path; absent when that cannot be told.
std::optional<bool> isNothingAt(const std::string& path) {
    if (platform::fileStatus(path))
        return false;
    if (errno == ENOENT || errno == ENOTDIR)
        return true;
    return std::nullopt;
}

/// The topmost place above or at the node where something else is mounted by now; the node itself when there
/// is none.
NodeIndex belowMounts(const FileTree& tree, NodeIndex node) {
    std::uint64_t rootMount = 0;
    PageArray<std::byte> buffer(platform::DirectoryReader::bufferBytes);
    if (const auto root = platform::DirectoryReader::open(-1, tree.rootPath.c_str(), buffer.span())) {
        if (const auto own = root->measure())
            rootMount = own->place.mountId;
    }
    const walk::MountBoundary boundary(platform::mountTable(), tree.rootPath, rootMount);
    NodeIndex left = node;
    for (NodeIndex i = node; i != 0; i = tree.parent(i).value_or(0)) {
        if (boundary.contains(tree.walkedPath(i)))
            left = tree.parent(i).value_or(0);
    }
    return left;
}

} // namespace

RescanTarget rescanTarget(const FileTree& tree, NodeIndex node, const Exclusions& exclusions) {
    using Kind = RescanTarget::Kind;
    if (!tree.isAttached(node))
        return {.kind = Kind::gone, .node = node};
    const auto& names = PathCanonicalizer::shared();
    const auto root = tree.path(0, names);
    for (node = belowMounts(tree, node); node != 0; node = tree.parent(node).value_or(0)) {
        const auto path = tree.walkedPath(node);
        const bool isElsewhere = tree.flags(node).contains(NodeFlags::otherVolume) && !tree.isExcluded(node);
        if (!tree.isFolder(node) || isElsewhere || tree.flags(node).contains(NodeFlags::dataless)
            || exclusions.leavesOut(tree.path(node, names), root))
            continue;
        const auto isGone = isNothingAt(path);
        if (!isGone)
            return {.kind = Kind::unreachable, .node = node};
        if (*isGone) {
            // With the folder that held it, all of that is gone.
            for (auto above = tree.parent(node).value_or(0);
                 above != 0 && isNothingAt(tree.walkedPath(above)) == true;
                 above = tree.parent(above).value_or(0))
                node = above;
            return {.kind = Kind::gone, .node = node};
        }
        const auto status = platform::fileStatus(path);
        const bool isSame = status && status->type == platform::FileType::directory
                            && (tree.device == 0 || status->device == tree.device)
                            && RealPath::resolve(path) == path;
        if (isSame)
            return {.kind = Kind::folder, .node = node};
    }
    return {.kind = Kind::wholeTree, .node = 0};
}

} // namespace orbel
