#include "Platform/Parallel.h"
#include "Scan/FileTree.h"

#include <algorithm>

namespace orbel {

namespace {

/// Ranges below this many nodes are not worth a thread.
constexpr std::size_t parallelGrain = 64 * 1024;

struct SizedNode {
    std::uint64_t bytes;
    NodeIndex node;
};

/// Sorts the children of one folder, the largest first, equal ones by index. The sizes are copied beside the
/// indices first, so that comparing two children does not reach into the tree twice.
void sortLargestFirst(std::span<NodeIndex> children, const Column<std::uint64_t>& allocated,
                      std::vector<SizedNode>& scratch) {
    scratch.resize(children.size());
    std::ranges::transform(children, scratch.begin(), [&](NodeIndex node) {
        return SizedNode{allocated[node], node};
    });
    std::ranges::sort(scratch, [](const SizedNode& a, const SizedNode& b) {
        return a.bytes != b.bytes ? a.bytes > b.bytes : a.node < b.node;
    });
    std::ranges::transform(scratch, children.begin(), &SizedNode::node);
}

} // namespace

std::vector<FileTree::HardLinkCandidate> FileTree::hardLinkCandidates() const {
    // A file that is mounted here from elsewhere is no link of one of this volume, even if their
    // inode numbers are equal.
    constexpr NodeFlags neverLinks = NodeFlags::folder | NodeFlags::otherVolume;
    std::vector<HardLinkCandidate> candidates;
    for (std::size_t i = 1; i < count(); ++i) {
        if (linkCounts[i] >= 2 && !NodeFlags{nodeFlags[i]}.intersects(neverLinks))
            candidates.push_back({.node = static_cast<NodeIndex>(i), .inode = inodes[i]});
    }
    return candidates;
}

void FileTree::finalize(std::span<const HardLinkCandidate> candidates) {
    groupHardLinks(candidates);
    for (const auto& [file, members] : hardLinkMembers) {
        if (members.size() >= 2)
            assignHardLinkOwner(file, members);
    }
    recomputeTotals();
    markProtectedData();
}

void FileTree::finalizeKept() {
    groupHardLinks(hardLinkCandidates());
    countUnreadable();
    markProtectedData();
}

void FileTree::groupHardLinks(std::span<const HardLinkCandidate> candidates) {
    for (const auto& [node, inode] : candidates) {
        const FileIdentity file{.device = identity(node).device, .inode = inode};
        hardLinkMembers[file].push_back(node);
        auto& size = hardLinkSizes[file];
        size = std::max(size, allocatedBytes[node]);
    }
}

void FileTree::assignHardLinkOwner(const FileIdentity& file, std::span<const NodeIndex> members) {
    const auto size = hardLinkSizes.find(file);
    if (size == hardLinkSizes.end() || members.empty())
        return;
    // The first path in byte order, so that the owner does not depend on the order in which threads
    // met the links.
    NodeIndex owner = members.front();
    std::string ownerPath = walkedPath(owner);
    for (const NodeIndex member : members.subspan(1)) {
        std::string memberPath = walkedPath(member);
        if (memberPath < ownerPath) {
            owner = member;
            ownerPath = std::move(memberPath);
        }
    }
    for (const NodeIndex member : members) {
        const NodeFlags known{nodeFlags[member]};
        const bool owns = member == owner;
        allocatedBytes[member] = owns ? size->second : 0;
        nodeFlags[member] = (owns ? known.without(NodeFlags::linkCountedElsewhere)
                                  : known.with(NodeFlags::linkCountedElsewhere))
                                .rawValue;
    }
}

void FileTree::recomputeTotals() {
    const std::size_t nodes = count();
    descendantCounts.assign(nodes, 0);
    for (std::size_t i = 0; i < nodes; ++i) {
        if (NodeFlags{nodeFlags[i]}.contains(NodeFlags::folder))
            allocatedBytes[i] = 0;
    }
    for (std::size_t i = nodes; i-- > 1;) {
        const NodeIndex parent = parentIndex[i];
        if (parent == noParent)
            continue;
        allocatedBytes[parent] += allocatedBytes[i];
        descendantCounts[parent] += descendantCounts[i] + 1;
    }
    countUnreadable();
    buildChildLists();
}

/// Mostly few entries of a tree could not be read, so each is counted at all the folders that it lies in.
void FileTree::countUnreadable() {
    unreadableInside.clear();
    const auto add = [this](NodeIndex node, std::uint64_t entries) {
        for (; node != noParent; node = parentIndex[node])
            unreadableInside[node] += entries;
    };
    for (std::size_t i = 0; i < count(); ++i) {
        if (NodeFlags{nodeFlags[i]}.contains(NodeFlags::unreadable))
            add(static_cast<NodeIndex>(i), 1);
    }
    for (const auto& [folder, entries] : unlistedEntries)
        add(folder, entries);
}

void FileTree::buildChildLists() {
    const std::size_t nodes = count();
    childStart.assign(nodes + 1, 0);
    for (const NodeIndex parent : parentIndex) {
        if (parent != noParent)
            ++childStart[parent];
    }
    std::uint32_t end = 0;
    for (auto& start : childStart)
        start = end += start;
    childList.resize(end);
    // Each entry now holds the end of its range. Placing the last child first moves it down to the start and
    // leaves every range in ascending order.
    for (std::size_t i = nodes; i-- > 0;) {
        if (parentIndex[i] != noParent)
            childList[--childStart[parentIndex[i]]] = static_cast<NodeIndex>(i);
    }
    forEachRange(nodes, parallelGrain, [&](std::size_t begin, std::size_t endOfRange) {
        std::vector<SizedNode> scratch;
        for (std::size_t i = begin; i < endOfRange; ++i) {
            const std::span children(childList.data() + childStart[i], childList.data() + childStart[i + 1]);
            if (children.size() >= 2)
                sortLargestFirst(children, allocatedBytes, scratch);
        }
    });
}

} // namespace orbel
