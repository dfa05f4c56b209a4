#pragma once

#include "Safety/FileIdentity.h"
#include "Scan/Exclusions.h"
#include "Scan/FileKind.h"
#include "Scan/NodeFlags.h"
#include "Util/Column.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace orbel {

class PathCanonicalizer;
struct FileStamp;

/// An index into a tree's columns. Node 0 is the scanned root.
using NodeIndex = std::uint32_t;

/// The result of one scan: every file and folder below a root, as one column per field.
///
/// Invariants, on which finalising and editing rely:
///  1. Node 0 is the root; every other node's parent has a smaller index, so one pass from the last node to
///     the first meets every child before its parent.
///  2. All columns hold `count()` elements; `childStart` holds one more once the child lists are built.
///  3. A node is attached when its chain of parents reaches node 0. Detached nodes keep their data and the
///     links within their own subtree; they are in no child list and in no total of what is attached.
///
/// A plain value: built by one thread, then read from any number at once. A copy is a real copy, of some 70
/// bytes a node. Every query takes an index below `count()`; any other stops the process. There is no input
/// or output here.
struct FileTree {
    static constexpr NodeIndex noParent = 0xFFFFFFFF;
    /// In `modifiedMinutes`, of a node whose time nothing tells.
    static constexpr std::int32_t unknownTime = std::numeric_limits<std::int32_t>::min();

    FileTree() = default;
    /// An empty tree. Without a second path, what was asked for is what was walked.
    explicit FileTree(std::string rootPath, std::optional<std::string> requestedRootPath = std::nullopt);

    std::string rootPath;          ///< the path that was walked: real, without links
    std::string requestedRootPath; ///< the path that was asked for

    Column<char> names;               ///< the bytes of all names, one after another
    Column<std::uint32_t> nameStart;  ///< per node: offset of its name in `names`
    Column<std::uint16_t> nameLength; ///< per node: bytes of its name; 0 for the root
    Column<NodeIndex> parentIndex;    ///< per node: `noParent` for the root and for detached nodes
    /// Per node: bytes on disk; of a folder, what its attached children sum to.
    Column<std::uint64_t> allocatedBytes;
    Column<std::uint64_t> logicalBytes;     ///< per node: content length in bytes; never summed
    Column<std::int32_t> modifiedMinutes;   ///< per node: whole minutes since 1970 UTC, rounded down
    Column<std::uint64_t> inodes;           ///< per node
    Column<std::uint16_t> linkCounts;       ///< per node: hard links, capped at 65,535
    Column<std::uint8_t> nodeFlags;         ///< per node: NodeFlags::rawValue
    Column<std::uint8_t> kinds;             ///< per node: FileKind as a number
    Column<std::uint32_t> descendantCounts; ///< per node: attached nodes below it
    Column<std::uint32_t> childStart; ///< children of node i: childList[childStart[i] ..< childStart[i + 1]]
    Column<NodeIndex> childList; ///< grouped by parent; in a group the largest first, equal ones by index

    /// Nodes that are protected data themselves, ascending; not the root.
    std::vector<NodeIndex> protectedNodes;
    std::unordered_set<NodeIndex> protectedContainers; ///< nodes that are, or contain, protected data
    std::unordered_set<NodeIndex> aliasNodes;          ///< alias files of the file manager
    /// What the scan left out because it was told to: nodes without children or bytes, flagged `otherVolume`
    /// like all that is not entered.
    std::unordered_set<NodeIndex> excludedNodes;
    Exclusions exclusions; ///< what the scan was told to leave out
    /// By file: the bytes that a group of hard links occupies once, and its members in node order.
    std::unordered_map<FileIdentity, std::uint64_t> hardLinkSizes;
    std::unordered_map<FileIdentity, std::vector<NodeIndex>> hardLinkMembers;

    /// By folder: entries in its own listing that could not be read, and are no nodes.
    std::unordered_map<NodeIndex, std::uint32_t> unlistedEntries;
    /// By node: entries that could not be read, at it and below it; of a folder as of its total. No zeros.
    std::unordered_map<NodeIndex, std::uint64_t> unreadableInside;

    /// Of every node that was detached itself: the folder that held it, from which its path is still known.
    std::unordered_map<NodeIndex, NodeIndex> detachedFrom;

    std::uint64_t device = 0; ///< device number of the scanned volume; 0 when unknown
    /// Of files that show another device than `device`: some file systems (overlay) show each file with the
    /// device of the layer that holds it, and inode numbers repeat from layer to layer.
    std::unordered_map<NodeIndex, std::uint64_t> otherDevices;
    std::uint64_t unreadableCount = 0;  ///< entries that could not be read
    std::uint64_t datalessCount = 0;    ///< cloud files that are not on this disk
    std::uint64_t otherVolumeCount = 0; ///< mount points of other volumes that were not entered

    // Queries.

    std::size_t count() const { return parentIndex.size(); }
    /// The name as text, invalid UTF-8 replaced. The root is called by the last component of
    /// `rootPath`, or "/".
    std::string name(NodeIndex node) const;
    /// The name's bytes as they are on disk; empty for the root. Valid until the tree changes.
    std::string_view nameBytes(NodeIndex node) const;
    std::optional<NodeIndex> parent(NodeIndex node) const;
    /// Largest first. Empty when there are none or the child lists are not built. Valid until
    /// the tree changes.
    std::span<const NodeIndex> children(NodeIndex node) const;
    std::uint64_t allocated(NodeIndex node) const;
    std::uint64_t logical(NodeIndex node) const;
    std::uint64_t inode(NodeIndex node) const;
    /// What tells the node's file from all others of the tree; the device is 0 when `device` is.
    FileIdentity identity(NodeIndex node) const;
    std::uint16_t linkCount(NodeIndex node) const;
    std::uint32_t descendantCount(NodeIndex node) const;
    /// Long before 1970 when it is not known.
    std::chrono::sys_seconds modified(NodeIndex node) const;
    /// Whether the time of the last change was found out.
    bool isModifiedKnown(NodeIndex node) const;
    NodeFlags flags(NodeIndex node) const;
    bool isFolder(NodeIndex node) const;
    FileKind kind(NodeIndex node) const;
    bool isAlias(NodeIndex node) const;
    /// Left out by the scan: what it holds is not known.
    bool isExcluded(NodeIndex node) const;
    /// How many entries could not be read: below the node, and the node itself.
    std::uint64_t unreadableIn(NodeIndex node) const;
    bool containsProtectedData(NodeIndex node) const;
    /// The first node by index that is protected data and is, or lies in, `node`, detached ones included.
    std::optional<NodeIndex> protectedInside(NodeIndex node) const;
    /// Where another volume begins in `node`, or at it; one of several.
    std::optional<NodeIndex> otherVolumeInside(NodeIndex node) const;
    /// What was left out of the scan in `node`, or is it; one of several.
    std::optional<NodeIndex> excludedInside(NodeIndex node) const;
    bool isAttached(NodeIndex node) const;

    /// The absolute path as it was walked, in raw bytes; of a detached node the path it had.
    std::string walkedPath(NodeIndex node) const;
    /// `walkedPath` as the user sees it.
    std::string path(NodeIndex node, const PathCanonicalizer& canonicalizer) const;
    /// The attached node of an absolute path, given in its visible form or its data-volume form. Absent when
    /// it lies outside the root or a component is not in the tree. Names are compared byte for byte.
    std::optional<NodeIndex> index(const std::string& ofPath, const PathCanonicalizer& canonicalizer) const;
    /// Whether a fresh stamp still describes the node, to the minute: same object and time, for files the
    /// same size.
    bool matchesScan(NodeIndex node, const FileStamp& stamp) const;

    // Building and editing.

    /// What the columns hold of one node.
    struct NewNode {
        NodeIndex parent = noParent;
        std::string_view name{};
        std::uint64_t allocated = 0;
        std::uint64_t logical = 0;
        std::int32_t modifiedMinutes = 0;
        std::uint64_t inode = 0;
        std::uint16_t linkCount = 1;
        NodeFlags flags{};
        FileKind kind = FileKind::other;
    };

    /// Appends a node to a tree that is still to be completed, and returns its index. Stops the process when
    /// there are more nodes, or more bytes of names, than 32 bits can tell apart.
    NodeIndex append(const NewNode& node);

    struct HardLinkCandidate {
        NodeIndex node;
        std::uint64_t inode;
    };

    /// The non-folders of this volume with two or more links, in node order.
    std::vector<HardLinkCandidate> hardLinkCandidates() const;

    /// Completes the tree once all nodes are there: assigns the bytes of hard links, marks protected
    /// containers, sums up and builds the child lists. `candidates` are those of hardLinkCandidates().
    void finalize(std::span<const HardLinkCandidate> candidates);

    /// Completes a tree that was completed before, kept and read again: its bytes, descendant counts and
    /// child lists are set. Marks protected containers, counts what could not be read and groups hard links.
    void finalizeKept();

    /// Detaches nodes that are gone from the disk and brings hard links and totals up to date. Node 0, nodes
    /// outside the tree and detached ones are passed over; when nothing is left, the tree stays as it is.
    void remove(std::span<const NodeIndex> gone);

    /// Attaches detached nodes again where they were, and brings hard links and totals up to date. Any other
    /// node is passed over.
    void restore(std::span<const NodeIndex> back);

    /// This tree with a folder measured again: what lies below the folder is what `fresh` found there, whose
    /// root it is. Node indices are others in it, paths are the same. What was detached from the folder stays
    /// detached while it could still come back. Stops the process unless the folder is attached and below the
    /// root, and `fresh` holds a folder.
    FileTree spliced(NodeIndex folder, const FileTree& fresh) const;

    /// This tree as if the scan had left the folder out, with the exclusions unchanged. Stops the process
    /// unless it is attached and below the root.
    FileTree leavingOut(NodeIndex folder) const;

    /// Sums folders up from their attached children, counts descendants and what could not be read, and
    /// builds the child lists.
    void recomputeTotals();

private:
    void requireNode(NodeIndex node) const;
    template <class Test>
    std::optional<NodeIndex> notEnteredInside(NodeIndex node, Test test) const;
    NodeIndex holderOf(NodeIndex node) const;
    void groupHardLinks(std::span<const HardLinkCandidate> candidates);
    void assignHardLinkOwners();
    void assignHardLinkOwner(const FileIdentity& file, std::span<const NodeIndex> members);
    void markProtectedData();
    void countUnreadable();
    void buildChildLists();
    std::optional<NodeIndex> childNamed(NodeIndex folder, std::string_view wanted) const;
};

} // namespace orbel
