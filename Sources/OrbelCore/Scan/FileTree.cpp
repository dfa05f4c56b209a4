#include "Scan/FileTree.h"

#include "Safety/FileStamp.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/RealPath.h"
#include "Util/Check.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>

namespace orbel {

FileTree::FileTree(std::string root, std::optional<std::string> requestedRoot)
    : rootPath(std::move(root)), requestedRootPath(requestedRoot ? std::move(*requestedRoot) : rootPath) {}

void FileTree::requireNode(NodeIndex node) const {
    ORBEL_CHECK(node < count(), "a node of this tree");
}

std::string FileTree::name(NodeIndex node) const {
    if (node != 0)
        return lossyUtf8(nameBytes(node));
    requireNode(node);
    return rootPath == "/" ? rootPath : lossyUtf8(lastPathComponent(rootPath));
}

std::string_view FileTree::nameBytes(NodeIndex node) const {
    requireNode(node);
    const std::size_t start = nameStart[node];
    const std::size_t length = nameLength[node];
    ORBEL_CHECK(start + length <= names.size(), "a name inside the name store");
    return {names.data() + start, length};
}

std::optional<NodeIndex> FileTree::parent(NodeIndex node) const {
    requireNode(node);
    if (parentIndex[node] == noParent)
        return std::nullopt;
    return parentIndex[node];
}

std::span<const NodeIndex> FileTree::children(NodeIndex node) const {
    requireNode(node);
    if (childStart.size() != count() + 1)
        return {};
    return {childList.data() + childStart[node], childList.data() + childStart[node + 1]};
}

std::uint64_t FileTree::allocated(NodeIndex node) const {
    requireNode(node);
    return allocatedBytes[node];
}

std::uint64_t FileTree::logical(NodeIndex node) const {
    requireNode(node);
    return logicalBytes[node];
}

std::uint64_t FileTree::inode(NodeIndex node) const {
    requireNode(node);
    return inodes[node];
}

FileIdentity FileTree::identity(NodeIndex node) const {
    requireNode(node);
    const auto other = otherDevices.empty() ? otherDevices.end() : otherDevices.find(node);
    return {.device = other != otherDevices.end() ? other->second : device, .inode = inodes[node]};
}

std::uint16_t FileTree::linkCount(NodeIndex node) const {
    requireNode(node);
    return linkCounts[node];
}

std::uint32_t FileTree::descendantCount(NodeIndex node) const {
    requireNode(node);
    return descendantCounts[node];
}

std::chrono::sys_seconds FileTree::modified(NodeIndex node) const {
    requireNode(node);
    return std::chrono::sys_seconds(std::chrono::minutes(modifiedMinutes[node]));
}

bool FileTree::isModifiedKnown(NodeIndex node) const {
    // What was not entered was mostly not measured either.
    const bool isUnmeasured = flags(node).contains(NodeFlags::otherVolume) && modifiedMinutes[node] == 0;
    return !isUnmeasured && modifiedMinutes[node] != unknownTime;
}

NodeFlags FileTree::flags(NodeIndex node) const {
    requireNode(node);
    return {nodeFlags[node]};
}

bool FileTree::isFolder(NodeIndex node) const {
    return flags(node).contains(NodeFlags::folder);
}

FileKind FileTree::kind(NodeIndex node) const {
    requireNode(node);
    return fileKindFromRawValue(kinds[node]);
}

bool FileTree::isAlias(NodeIndex node) const {
    requireNode(node);
    return aliasNodes.contains(node);
}

bool FileTree::isExcluded(NodeIndex node) const {
    requireNode(node);
    return !excludedNodes.empty() && excludedNodes.contains(node);
}

std::uint64_t FileTree::unreadableIn(NodeIndex node) const {
    requireNode(node);
    const auto known = unreadableInside.find(node);
    return known == unreadableInside.end() ? 0 : known->second;
}

bool FileTree::containsProtectedData(NodeIndex node) const {
    requireNode(node);
    return protectedContainers.contains(node);
}

NodeIndex FileTree::append(const NewNode& node) {
    const auto index = count();
    ORBEL_CHECK(index < noParent, "fewer nodes than a 32-bit index can tell apart");
    ORBEL_CHECK(node.name.size() <= std::numeric_limits<std::uint32_t>::max() - names.size(),
                "at most 4 GiB of names");
    nameStart.push_back(static_cast<std::uint32_t>(names.size()));
    nameLength.push_back(static_cast<std::uint16_t>(node.name.size()));
    names.insert(names.end(), node.name.begin(), node.name.end());
    parentIndex.push_back(node.parent);
    allocatedBytes.push_back(node.allocated);
    logicalBytes.push_back(node.logical);
    modifiedMinutes.push_back(node.modifiedMinutes);
    inodes.push_back(node.inode);
    linkCounts.push_back(node.linkCount);
    nodeFlags.push_back(node.flags.rawValue);
    kinds.push_back(static_cast<std::uint8_t>(node.kind));
    return static_cast<NodeIndex>(index);
}

bool FileTree::isAttached(NodeIndex node) const {
    requireNode(node);
    while (node != 0 && node != noParent)
        node = parentIndex[node];
    return node == 0;
}

template <class Test>
std::optional<NodeIndex> FileTree::notEnteredInside(NodeIndex node, Test test) const {
    std::vector<NodeIndex> open{node};
    while (!open.empty()) {
        const NodeIndex i = open.back();
        open.pop_back();
        if (flags(i).contains(NodeFlags::otherVolume) && test(i))
            return i;
        const auto inside = children(i);
        open.insert(open.end(), inside.begin(), inside.end());
    }
    return std::nullopt;
}

std::optional<NodeIndex> FileTree::otherVolumeInside(NodeIndex node) const {
    requireNode(node);
    if (otherVolumeCount == 0)
        return std::nullopt;
    return notEnteredInside(node, [this](NodeIndex i) { return !isExcluded(i); });
}

std::optional<NodeIndex> FileTree::excludedInside(NodeIndex node) const {
    requireNode(node);
    if (excludedNodes.empty())
        return std::nullopt;
    return notEnteredInside(node, [this](NodeIndex i) { return isExcluded(i); });
}

/// The folder that holds a node below the root, or held it until it was detached.
NodeIndex FileTree::holderOf(NodeIndex node) const {
    return parentIndex[node] != noParent ? parentIndex[node] : detachedFrom.at(node);
}

std::string FileTree::walkedPath(NodeIndex node) const {
    requireNode(node);
    if (node == 0)
        return rootPath;
    const std::size_t rootLength = rootPath == "/" ? 0 : rootPath.size();
    std::size_t length = rootLength;
    for (NodeIndex i = node; i != 0; i = holderOf(i))
        length += 1U + nameLength[i];
    std::string path(length, '/');
    rootPath.copy(path.data(), rootLength);
    for (NodeIndex i = node; i != 0; i = holderOf(i)) {
        const std::string_view bytes = nameBytes(i);
        length -= bytes.size();
        bytes.copy(path.data() + length, bytes.size());
        --length;
    }
    return path;
}

std::string FileTree::path(NodeIndex node, const PathCanonicalizer& canonicalizer) const {
    return canonicalizer.visiblePath(walkedPath(node));
}

std::optional<NodeIndex> FileTree::childNamed(NodeIndex folder, std::string_view wanted) const {
    for (const NodeIndex child : children(folder)) {
        if (nameBytes(child) == wanted)
            return child;
    }
    return std::nullopt;
}

std::optional<NodeIndex> FileTree::index(const std::string& ofPath,
                                         const PathCanonicalizer& canonicalizer) const {
    if (count() == 0)
        return std::nullopt;
    for (const std::string& form :
         {canonicalizer.dataVolumePath(ofPath), canonicalizer.visiblePath(ofPath)}) {
        if (!RealPath::isInside(form, rootPath))
            continue;
        std::optional<NodeIndex> node = 0;
        for (const std::string_view component :
             pathComponents(std::string_view(form).substr(rootPath.size()))) {
            node = childNamed(*node, component);
            if (!node)
                break;
        }
        if (node)
            return node;
    }
    return std::nullopt;
}

bool FileTree::matchesScan(NodeIndex node, const FileStamp& stamp) const {
    using namespace std::chrono;
    const auto known = identity(node);
    if (stamp.identity.inode != known.inode || (device != 0 && stamp.identity.device != known.device))
        return false;
    // A stamp's time ends where its nanoseconds do, in 2262; the tree's goes on.
    constexpr auto first = floor<minutes>(nanoseconds::min()).count();
    constexpr auto last = floor<minutes>(nanoseconds::max()).count();
    if (floor<minutes>(nanoseconds(stamp.modifiedNanos)).count()
        != std::clamp<std::int64_t>(modifiedMinutes[node], first, last))
        return false;
    return isFolder(node) || stamp.size == logicalBytes[node];
}

} // namespace orbel
