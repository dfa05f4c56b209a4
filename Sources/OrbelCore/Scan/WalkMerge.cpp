#include "Scan/WalkMerge.h"

#include "Util/Check.h"
#include "Util/Parallel.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <limits>

namespace orbel::walk {

namespace {

/// Folders with entries, in the order in which these stand in the tree.
using Order = std::vector<const WorkUnit*>;

template <class Body>
void forEachRun(const WorkUnit& unit, Body body) {
    if (unit.entries == 0)
        return;
    body(unit.run);
    if (unit.more) {
        for (const Run& run : *unit.more)
            body(run);
    }
}

Order numberFolders(WorkUnit& root, std::size_t firstNode) {
    Order order;
    std::size_t next = firstNode;
    std::vector<WorkUnit*> pending{&root};
    while (!pending.empty()) {
        WorkUnit* const unit = pending.back();
        pending.pop_back();
        unit->firstNode = static_cast<NodeIndex>(next);
        next += unit->entries;
        ORBEL_CHECK(next < FileTree::noParent, "fewer nodes than a 32-bit index can tell apart");
        if (unit->entries > 0)
            order.push_back(unit);
        const auto firstInner = pending.size();
        for (WorkUnit* inner = unit->firstChild; inner != nullptr; inner = inner->nextSibling)
            pending.push_back(inner);
        std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(firstInner), pending.end());
    }
    return order;
}

NodeIndex nodeOf(const WorkUnit& unit) {
    return unit.parent == nullptr ? 0 : unit.parent->firstNode + unit.position;
}

class Merge {
public:
    Merge(const Order& order, std::span<WorkerStore> stores, FileTree& tree, std::size_t nodes)
        : order_(order), stores_(stores), tree_(tree), nodes_(nodes) {}

    void run() {
        const std::array<std::function<void()>, 7> columns{
            [this] { copyNames(); },
            [this] { copy(&Chunk::inodes, tree_.inodes); },
            [this] { copy(&Chunk::allocated, tree_.allocatedBytes); },
            [this] { copy(&Chunk::logical, tree_.logicalBytes); },
            [this] { copy(&Chunk::modified, tree_.modifiedMinutes); },
            [this] { copy(&Chunk::links, tree_.linkCounts); },
            [this] {
                copy(&Chunk::flags, tree_.nodeFlags);
                copy(&Chunk::kinds, tree_.kinds);
                fillParents();
            },
        };
        forEachTask(columns.size(), [&](std::size_t column) { columns[column](); });
    }

private:
    template <class T>
    void copy(PageArray<T> Chunk::*column, Column<T>& into) {
        into.resize(nodes_);
        T* next = into.data() + 1;
        for (const WorkUnit* const unit : order_) {
            forEachRun(*unit, [&](const Run& run) {
                std::memcpy(next, (run.chunk->*column).data() + run.first, run.count * sizeof(T));
                next += run.count;
            });
        }
        release(column);
    }

    /// Names and their lengths and starts go together: where a run's names end follows from the lengths.
    void copyNames() {
        tree_.nameLength.resize(nodes_);
        tree_.nameStart.resize(nodes_);
        std::size_t bytes = 0;
        for (const WorkerStore& store : stores_) {
            for (const auto& chunk : store.chunks)
                bytes += chunk->nameBytes;
        }
        ORBEL_CHECK(bytes <= std::numeric_limits<std::uint32_t>::max(), "at most 4 GiB of names");
        tree_.names.resize(bytes);
        std::size_t node = 1;
        std::uint32_t end = 0;
        for (const WorkUnit* const unit : order_) {
            forEachRun(*unit, [&](const Run& run) {
                const std::uint32_t start = end;
                for (std::uint32_t i = run.first; i < run.first + run.count; ++i, ++node) {
                    const std::uint16_t length = run.chunk->nameLength[i];
                    tree_.nameStart[node] = end;
                    tree_.nameLength[node] = length;
                    end += length;
                }
                std::memcpy(tree_.names.data() + start, run.chunk->names.data() + run.nameStart, end - start);
            });
        }
        release(&Chunk::names);
        release(&Chunk::nameLength);
    }

    void fillParents() {
        tree_.parentIndex.resize(nodes_);
        for (const WorkUnit* const unit : order_)
            std::fill_n(tree_.parentIndex.begin() + unit->firstNode, unit->entries, nodeOf(*unit));
    }

    template <class T>
    void release(PageArray<T> Chunk::*column) {
        for (const WorkerStore& store : stores_) {
            for (const auto& chunk : store.chunks)
                ((*chunk).*column).release();
        }
    }

    const Order& order_;
    std::span<WorkerStore> stores_;
    FileTree& tree_;
    std::size_t nodes_;
};

} // namespace

std::vector<FileTree::HardLinkCandidate> merge(WorkUnit& root, std::span<WorkerStore> stores,
                                               FileTree& into) {
    ORBEL_CHECK(into.count() == 1, "a tree that holds only its root");
    const Order order = numberFolders(root, 1);
    const std::size_t nodes =
        order.empty() ? 1 : std::size_t{order.back()->firstNode} + order.back()->entries;
    Merge(order, stores, into, nodes).run();

    std::vector<FileTree::HardLinkCandidate> candidates;
    for (std::size_t i = 1; i < nodes; ++i) {
        if (into.linkCounts[i] >= 2 && !NodeFlags{into.nodeFlags[i]}.contains(NodeFlags::folder))
            candidates.push_back({.node = static_cast<NodeIndex>(i), .inode = into.inodes[i]});
    }
    for (WorkerStore& store : stores) {
        for (const AliasPlace& alias : store.aliases)
            into.aliasNodes.insert(alias.folder->firstNode + alias.position);
        store = WorkerStore{};
    }
    return candidates;
}

} // namespace orbel::walk
