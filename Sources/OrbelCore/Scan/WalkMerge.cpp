#include "Scan/WalkMerge.h"

#include "Platform/Parallel.h"
#include "Util/Check.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <limits>
#include <numeric>

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

    /// Names come last, when nothing else is in memory twice: they are the widest column.
    void run() {
        inParallel({[this] { copy(&Chunk::inodes, tree_.inodes); },
                    [this] { copy(&Chunk::allocated, tree_.allocatedBytes); },
                    [this] { copy(&Chunk::logical, tree_.logicalBytes); },
                    [this] { copy(&Chunk::modified, tree_.modifiedMinutes); },
                    [this] { copy(&Chunk::links, tree_.linkCounts); },
                    [this] { copy(&Chunk::nameLength, tree_.nameLength); },
                    [this] { copy(&Chunk::flags, tree_.nodeFlags); },
                    [this] { copy(&Chunk::kinds, tree_.kinds); }});
        inParallel({[this] { copyNames(); }, [this] { fillParents(); }});
    }

private:
    static void inParallel(std::initializer_list<std::function<void()>> tasks) {
        forEachTask(tasks.size(), [&](std::size_t task) { tasks.begin()[task](); });
    }

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

    /// Needs the lengths in the tree: they tell where the names of a run end.
    void copyNames() {
        tree_.nameStart.resize(nodes_);
        const auto bytes = std::accumulate(tree_.nameLength.begin(), tree_.nameLength.end(), std::size_t{0});
        ORBEL_CHECK(bytes <= std::numeric_limits<std::uint32_t>::max(), "at most 4 GiB of names");
        tree_.names.resize(bytes);
        std::size_t node = 1;
        std::uint32_t end = 0;
        for (const WorkUnit* const unit : order_) {
            forEachRun(*unit, [&](const Run& run) {
                const std::uint32_t start = end;
                for (const std::size_t endOfRun = node + run.count; node < endOfRun; ++node) {
                    tree_.nameStart[node] = end;
                    end += tree_.nameLength[node];
                }
                std::memcpy(tree_.names.data() + start, run.chunk->names.data() + run.nameStart, end - start);
            });
        }
        release(&Chunk::names);
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

/// Folders that were gone when they were to be listed leave the tree again. They hold nothing, so parents and
/// their order stay as they are.
class GoneFolders {
public:
    explicit GoneFolders(std::span<const WorkerStore> stores) {
        for (const WorkerStore& store : stores) {
            for (const WorkUnit* const unit : store.gone)
                nodes_.push_back(nodeOf(*unit));
        }
        std::ranges::sort(nodes_);
    }

    /// Where a node that stays is after `removeFrom`.
    NodeIndex placeOf(NodeIndex node) const {
        const auto before = std::ranges::lower_bound(nodes_, node) - nodes_.begin();
        return node - static_cast<NodeIndex>(before);
    }

    void removeFrom(FileTree& tree) const {
        if (nodes_.empty())
            return;
        remove(tree.nameStart);
        remove(tree.nameLength);
        remove(tree.parentIndex);
        remove(tree.allocatedBytes);
        remove(tree.logicalBytes);
        remove(tree.modifiedMinutes);
        remove(tree.inodes);
        remove(tree.linkCounts);
        remove(tree.nodeFlags);
        remove(tree.kinds);
        for (NodeIndex& parent : std::span(tree.parentIndex).subspan(1))
            parent = placeOf(parent);
    }

private:
    template <class T>
    void remove(Column<T>& column) const {
        auto next = nodes_.begin();
        std::size_t kept = *next;
        for (std::size_t i = kept; i < column.size(); ++i) {
            if (next != nodes_.end() && *next == i)
                ++next;
            else
                column[kept++] = column[i];
        }
        column.resize(kept);
    }

    std::vector<NodeIndex> nodes_; ///< in ascending order
};

} // namespace

void merge(WorkUnit& root, std::span<WorkerStore> stores, FileTree& into) {
    ORBEL_CHECK(into.count() == 1, "a tree that holds only its root");
    const Order order = numberFolders(root, 1);
    const std::size_t nodes =
        order.empty() ? 1 : std::size_t{order.back()->firstNode} + order.back()->entries;
    Merge(order, stores, into, nodes).run();

    const GoneFolders gone(stores);
    gone.removeFrom(into);

    for (const WorkerStore& store : stores) {
        for (const AliasPlace& alias : store.aliases)
            into.aliasNodes.insert(gone.placeOf(alias.folder->firstNode + alias.position));
        for (const ExcludedPlace& left : store.excluded)
            into.excludedNodes.insert(gone.placeOf(left.folder->firstNode + left.position));
        for (const OtherDevice& other : store.otherDevices)
            into.otherDevices[gone.placeOf(other.folder->firstNode + other.position)] = other.device;
        for (const UnlistedEntries& unlisted : store.unlisted)
            into.unlistedEntries[gone.placeOf(nodeOf(*unlisted.folder))] = unlisted.count;
    }
    // Only now: a worker may have listed folders that another one's store holds.
    for (WorkerStore& store : stores)
        store = WorkerStore{};
}

} // namespace orbel::walk
