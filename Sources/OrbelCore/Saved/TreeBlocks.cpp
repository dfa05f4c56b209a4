#include "Saved/TreeBlocks.h"

#include "Platform/Parallel.h"
#include "Saved/ByteStream.h"
#include "Util/PathText.h"

#include <algorithm>
#include <atomic>
#include <limits>

namespace orbel {

namespace {

/// The columns of a block.
enum : std::uint8_t {
    flagColumn,
    kindColumn,
    nameLengthColumn,
    nameColumn,
    logicalColumn,
    allocatedColumn,
    modifiedColumn,
    inodeColumn,
    linkColumn,
    childColumn,
};
static_assert(childColumn + 1 == TreeBlocks::columnsPerBlock);

/// What a file of that length takes mostly, so that next to nothing is kept of what it does take.
std::uint64_t usualAllocation(std::uint64_t logical, NodeFlags flags) {
    constexpr std::uint64_t blockSize = 4096;
    constexpr NodeFlags takesNothing =
        NodeFlags::linkCountedElsewhere | NodeFlags::otherVolume | NodeFlags::dataless | NodeFlags::symlink;
    return flags.intersects(takesNothing) ? 0 : (logical + blockSize - 1) / blockSize * blockSize;
}

constexpr std::uint64_t asUnsigned(std::int32_t value) {
    return static_cast<std::uint64_t>(std::int64_t{value});
}

void writeBlock(const FileTree& tree, std::span<const NodeIndex> nodes, std::span<Packed> into) {
    std::array<ByteWriter, TreeBlocks::columnsPerBlock> columns;
    std::uint64_t inode = 0;
    std::uint64_t modified = 0;
    for (const NodeIndex node : nodes) {
        const NodeFlags flags = tree.flags(node);
        const auto name = tree.nameBytes(node);
        const auto logical = tree.logical(node);
        columns[flagColumn].raw({reinterpret_cast<const char*>(&flags.rawValue), 1});
        columns[kindColumn].raw({reinterpret_cast<const char*>(&tree.kinds[node]), 1});
        columns[nameLengthColumn].number(name.size());
        columns[nameColumn].raw(name);
        columns[logicalColumn].number(logical);
        columns[modifiedColumn].difference(asUnsigned(tree.modifiedMinutes[node]), modified);
        modified = asUnsigned(tree.modifiedMinutes[node]);
        columns[inodeColumn].difference(tree.inode(node), inode);
        inode = tree.inode(node);
        columns[linkColumn].number(tree.linkCount(node));
        if (flags.contains(NodeFlags::folder))
            columns[childColumn].number(tree.children(node).size());
        else
            columns[allocatedColumn].difference(tree.allocated(node), usualAllocation(logical, flags));
    }
    std::ranges::transform(columns, into.begin(), packed, &ByteWriter::bytes);
}

/// Fills a tree of `nodes` nodes from blocks; each block on a thread of its own.
class BlockReader {
public:
    BlockReader(std::span<const Frame> frames, std::size_t nodes, FileTree& tree)
        : frames_(frames), nodes_(nodes), tree_(tree) {}

    bool run() {
        if (!makeRoom())
            return false;
        std::atomic<bool> isSound = true;
        forEachTask(TreeBlocks::count(nodes_), [&](std::size_t block) {
            if (isSound && !readBlock(block))
                isSound = false;
        });
        return isSound;
    }

private:
    std::span<const Frame> framesOf(std::size_t block) const {
        return frames_.subspan(block * TreeBlocks::columnsPerBlock, TreeBlocks::columnsPerBlock);
    }

    bool makeRoom() {
        // More would be no sizes of columns: numbers have at most ten bytes, names hardly more than 255.
        constexpr std::size_t mostBytesPerNode = 512;
        std::size_t nameBytes = 0;
        for (std::size_t block = 0; block < TreeBlocks::count(nodes_); ++block) {
            for (const auto& frame : framesOf(block))
                if (frame.size > mostBytesPerNode * TreeBlocks::nodesPerBlock)
                    return false;
            firstNames_.push_back(static_cast<std::uint32_t>(nameBytes));
            nameBytes += framesOf(block)[nameColumn].size;
            if (nameBytes > std::numeric_limits<std::uint32_t>::max())
                return false;
        }
        tree_.names.resize(nameBytes);
        tree_.nameStart.resize(nodes_);
        tree_.nameLength.resize(nodes_);
        tree_.allocatedBytes.resize(nodes_);
        tree_.logicalBytes.resize(nodes_);
        tree_.modifiedMinutes.resize(nodes_);
        tree_.inodes.resize(nodes_);
        tree_.linkCounts.resize(nodes_);
        tree_.nodeFlags.resize(nodes_);
        tree_.kinds.resize(nodes_);
        tree_.childStart.resize(nodes_ + 1); // the counts of children until buildRelations()
        return true;
    }

    bool readBlock(std::size_t block) {
        const auto begin = block * TreeBlocks::nodesPerBlock;
        const auto end = std::min(begin + TreeBlocks::nodesPerBlock, nodes_);
        const auto frames = framesOf(block);
        const auto column = [&](std::size_t which) { return unpacked(frames[which]); };
        return readBytes(column(flagColumn), begin, end, tree_.nodeFlags)
               && readBytes(column(kindColumn), begin, end, tree_.kinds) && areKinds(begin, end)
               && readNames(column(nameLengthColumn), column(nameColumn), block, begin, end)
               && readNumbers(column(logicalColumn), begin, end, tree_.logicalBytes)
               && readAllocated(column(allocatedColumn), begin, end)
               && readModified(column(modifiedColumn), begin, end)
               && readInodes(column(inodeColumn), begin, end)
               && readNumbers(column(linkColumn), begin, end, tree_.linkCounts)
               && readChildCounts(column(childColumn), begin, end);
    }

    static bool readBytes(const std::optional<std::string>& bytes, std::size_t begin, std::size_t end,
                          Column<std::uint8_t>& into) {
        if (!bytes || bytes->size() != end - begin)
            return false;
        std::ranges::copy(*bytes, reinterpret_cast<char*>(into.data() + begin));
        return true;
    }

    bool areKinds(std::size_t begin, std::size_t end) const {
        return std::all_of(tree_.kinds.data() + begin, tree_.kinds.data() + end, [](std::uint8_t kind) {
            return static_cast<std::uint8_t>(fileKindFromRawValue(kind)) == kind;
        });
    }

    bool isFolder(std::size_t node) const {
        return NodeFlags{tree_.nodeFlags[node]}.contains(NodeFlags::folder);
    }

    bool readNames(const std::optional<std::string>& lengths, const std::optional<std::string>& names,
                   std::size_t block, std::size_t begin, std::size_t end) {
        if (!lengths || !names)
            return false;
        ByteReader reader(*lengths);
        std::string_view rest(*names);
        auto start = firstNames_[block];
        std::ranges::copy(rest, tree_.names.data() + start);
        for (std::size_t node = begin; node < end; ++node) {
            const auto length = reader.numberUpTo(std::numeric_limits<std::uint16_t>::max());
            if (length > rest.size() || !(node == 0 ? length == 0 : isEntryName(rest.substr(0, length))))
                return false;
            tree_.nameStart[node] = start;
            tree_.nameLength[node] = static_cast<std::uint16_t>(length);
            start += static_cast<std::uint32_t>(length);
            rest.remove_prefix(length);
        }
        return reader.isAtEnd() && rest.empty();
    }

    template <class T>
    static bool readNumbers(const std::optional<std::string>& bytes, std::size_t begin, std::size_t end,
                            Column<T>& into) {
        ByteReader reader(bytes ? std::string_view(*bytes) : std::string_view());
        for (std::size_t node = begin; node < end; ++node)
            into[node] = static_cast<T>(reader.numberUpTo(std::numeric_limits<T>::max()));
        return bytes && reader.isAtEnd();
    }

    bool readAllocated(const std::optional<std::string>& bytes, std::size_t begin, std::size_t end) {
        ByteReader reader(bytes ? std::string_view(*bytes) : std::string_view());
        for (std::size_t node = begin; node < end; ++node)
            tree_.allocatedBytes[node] =
                isFolder(node)
                    ? 0
                    : reader.difference(usualAllocation(tree_.logicalBytes[node], {tree_.nodeFlags[node]}));
        return bytes && reader.isAtEnd();
    }

    bool readModified(const std::optional<std::string>& bytes, std::size_t begin, std::size_t end) {
        ByteReader reader(bytes ? std::string_view(*bytes) : std::string_view());
        std::uint64_t modified = 0;
        for (std::size_t node = begin; node < end; ++node) {
            modified = reader.difference(modified);
            tree_.modifiedMinutes[node] = static_cast<std::int32_t>(modified);
            if (asUnsigned(tree_.modifiedMinutes[node]) != modified)
                return false;
        }
        return bytes && reader.isAtEnd();
    }

    bool readInodes(const std::optional<std::string>& bytes, std::size_t begin, std::size_t end) {
        ByteReader reader(bytes ? std::string_view(*bytes) : std::string_view());
        std::uint64_t inode = 0;
        for (std::size_t node = begin; node < end; ++node)
            tree_.inodes[node] = inode = reader.difference(inode);
        return bytes && reader.isAtEnd();
    }

    bool readChildCounts(const std::optional<std::string>& bytes, std::size_t begin, std::size_t end) {
        ByteReader reader(bytes ? std::string_view(*bytes) : std::string_view());
        for (std::size_t node = begin; node < end; ++node)
            tree_.childStart[node] =
                isFolder(node) ? static_cast<std::uint32_t>(reader.numberUpTo(nodes_)) : 0;
        return bytes && reader.isAtEnd();
    }

    std::span<const Frame> frames_;
    std::size_t nodes_;
    FileTree& tree_;
    std::vector<std::uint32_t> firstNames_; ///< by block, where its names begin among all
};

/// Sets parents and child lists from the numbers of children, which `childStart` holds. False when these are
/// not those of one tree.
bool buildRelations(FileTree& tree, std::size_t nodes) {
    tree.parentIndex.resize(nodes);
    tree.parentIndex[0] = FileTree::noParent;
    std::vector<NodeIndex> firstChild(nodes);
    std::vector<NodeIndex> pending{0};
    std::size_t next = 1;
    while (!pending.empty()) {
        const NodeIndex folder = pending.back();
        pending.pop_back();
        const std::size_t children = tree.childStart[folder];
        if (children > nodes - next)
            return false;
        firstChild[folder] = static_cast<NodeIndex>(next);
        std::fill_n(tree.parentIndex.begin() + static_cast<std::ptrdiff_t>(next), children, folder);
        for (std::size_t child = next + children; child-- > next;)
            if (tree.childStart[child] > 0)
                pending.push_back(static_cast<NodeIndex>(child));
        next += children;
    }
    if (next != nodes)
        return false;

    tree.childList.resize(nodes - 1);
    std::uint32_t start = 0;
    for (std::size_t node = 0; node < nodes; ++node) {
        const auto children = std::exchange(tree.childStart[node], start);
        for (std::uint32_t i = 0; i < children; ++i)
            tree.childList[start + i] = firstChild[node] + i;
        start += children;
    }
    tree.childStart[nodes] = start;
    return true;
}

/// Sums up bytes and descendants. False when a total does not fit, or a child list is not in its order.
bool sumUp(FileTree& tree, std::size_t nodes) {
    tree.descendantCounts.assign(nodes, 0);
    for (std::size_t node = nodes; node-- > 1;) {
        const NodeIndex parent = tree.parentIndex[node];
        auto& total = tree.allocatedBytes[parent];
        if (__builtin_add_overflow(total, tree.allocatedBytes[node], &total))
            return false;
        tree.descendantCounts[parent] += tree.descendantCounts[node] + 1;
    }
    // The largest first, equal ones by index.
    for (std::size_t node = 2; node < nodes; ++node)
        if (tree.parentIndex[node] == tree.parentIndex[node - 1]
            && tree.allocatedBytes[node] > tree.allocatedBytes[node - 1])
            return false;
    return true;
}

} // namespace

KeptOrder::KeptOrder(const FileTree& tree) : places(tree.count(), FileTree::noParent) {
    nodes.reserve(tree.count());
    nodes.push_back(0);
    std::vector<NodeIndex> pending{0};
    while (!pending.empty()) {
        const auto children = tree.children(pending.back());
        pending.pop_back();
        nodes.insert(nodes.end(), children.begin(), children.end());
        for (std::size_t i = children.size(); i-- > 0;)
            if (!tree.children(children[i]).empty())
                pending.push_back(children[i]);
    }
    for (std::size_t place = 0; place < nodes.size(); ++place)
        places[nodes[place]] = static_cast<NodeIndex>(place);
}

std::vector<Packed> TreeBlocks::of(const FileTree& tree, const KeptOrder& order) {
    const auto blocks = count(order.nodes.size());
    std::vector<Packed> columns(blocks * columnsPerBlock);
    forEachTask(blocks, [&](std::size_t block) {
        const auto begin = block * nodesPerBlock;
        writeBlock(tree,
                   std::span(order.nodes).subspan(begin, std::min(nodesPerBlock, order.nodes.size() - begin)),
                   std::span(columns).subspan(block * columnsPerBlock, columnsPerBlock));
    });
    return columns;
}

bool TreeBlocks::read(std::span<const Frame> frames, std::size_t nodes, FileTree& tree) {
    if (nodes == 0 || nodes >= FileTree::noParent || frames.size() != count(nodes) * columnsPerBlock
        || !BlockReader(frames, nodes, tree).run() || !buildRelations(tree, nodes) || !sumUp(tree, nodes))
        return false;
    tree.finalizeKept();
    return true;
}

} // namespace orbel
