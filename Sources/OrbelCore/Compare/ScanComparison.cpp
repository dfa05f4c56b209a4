#include "Compare/ScanComparison.h"

#include "Util/Check.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace orbel {

namespace {

bool isKnown(const FileTree& tree, NodeIndex node) {
    const auto flags = tree.flags(node);
    return !flags.contains(NodeFlags::unreadable) && !flags.contains(NodeFlags::otherVolume);
}

/// The same in both scans, although the volume may have had another device number then.
FileIdentity identityOnVolume(const FileTree& tree, NodeIndex node) {
    auto identity = tree.identity(node);
    if (identity.device == tree.device)
        identity.device = 0;
    return identity;
}

/// Pairs of nodes of two trees, the earlier one's first.
using Pairs = std::vector<std::pair<NodeIndex, NodeIndex>>;

class Comparing {
public:
    Comparing(const FileTree& before, const FileTree& after) : before_(before), after_(after) {
        result_.counterparts.resize(after.count(), FileTree::noParent);
    }

    ScanComparison run() && {
        ORBEL_CHECK(std::min(before_.count(), after_.count()) > 0, "only scans of something are compared");
        if (before_.isFolder(0) == after_.isFolder(0)) {
            pairs_.emplace_back(0, 0);
            pairBelow(pairs_, &came_, &went_);
        } else {
            came_.push_back(0);
            went_.push_back(0);
        }
        markIncomparable();
        addSizeChanges();
        findMoves();
        addRest(went_, ChangeKind::went);
        addRest(came_, ChangeKind::came);
        sort();
        return std::move(result_);
    }

private:
    static constexpr NodeIndex none = FileTree::noParent;

    /// Appends the pairs of what is in two folders to `pairs`, and what has no partner to the other two.
    void pairChildren(std::pair<NodeIndex, NodeIndex> folders, Pairs& pairs, std::vector<NodeIndex>* came,
                      std::vector<NodeIndex>* went) const {
        if (isKnown(before_, folders.first) != isKnown(after_, folders.second))
            return;
        auto olds = before_.children(folders.first);
        auto nows = after_.children(folders.second);
        const auto key = [](const FileTree& tree, NodeIndex node) {
            return std::pair(tree.nameBytes(node), tree.isFolder(node));
        };
        // Where nothing changed, both lists are the same.
        while (!olds.empty() && !nows.empty() && key(before_, olds[0]) == key(after_, nows[0])) {
            pairs.emplace_back(olds[0], nows[0]);
            olds = olds.subspan(1);
            nows = nows.subspan(1);
        }
        const auto sorted = [&](const FileTree& tree, std::span<const NodeIndex> nodes) {
            std::vector<NodeIndex> list(nodes.begin(), nodes.end());
            std::ranges::sort(list, {}, [&](NodeIndex node) { return key(tree, node); });
            return list;
        };
        const auto oldList = sorted(before_, olds);
        const auto nowList = sorted(after_, nows);
        auto old = oldList.begin();
        auto now = nowList.begin();
        while (old != oldList.end() || now != nowList.end()) {
            const bool isOldOver = old == oldList.end();
            const bool isNowOver = now == nowList.end();
            if (isOldOver || (!isNowOver && key(after_, *now) < key(before_, *old))) {
                if (came)
                    came->push_back(*now);
                ++now;
            } else if (isNowOver || key(before_, *old) < key(after_, *now)) {
                if (went)
                    went->push_back(*old);
                ++old;
            } else {
                pairs.emplace_back(*old++, *now++);
            }
        }
    }

    /// Appends all that is in both of the first pair, level after level.
    void pairBelow(Pairs& pairs, std::vector<NodeIndex>* came, std::vector<NodeIndex>* went) const {
        std::size_t done = 0;
        while (done < pairs.size())
            pairChildren(pairs[done++], pairs, came, went);
    }

    /// The two and all that is in both, when they are the same object under two paths; else nothing.
    Pairs pairsIfMoved(NodeIndex old, NodeIndex now) const {
        const bool isFolder = after_.isFolder(now);
        const bool isSameTime =
            before_.isModifiedKnown(old) && before_.modifiedMinutes[old] == after_.modifiedMinutes[now];
        Pairs pairs{{old, now}};
        if (before_.isFolder(old) != isFolder || isKnown(before_, old) != isKnown(after_, now))
            return {};
        if (!isFolder)
            return isSameTime && before_.logical(old) == after_.logical(now) ? pairs : Pairs();
        pairBelow(pairs, nullptr, nullptr);
        const auto entries = before_.descendantCount(old);
        const bool isSame = entries == 0 ? isSameTime : (pairs.size() - 1) * 2 >= entries;
        return isSame ? pairs : Pairs();
    }

    void findMoves() {
        std::unordered_multimap<FileIdentity, NodeIndex*> gone;
        for (NodeIndex& node : went_)
            if (before_.inode(node) != 0)
                gone.emplace(identityOnVolume(before_, node), &node);
        for (NodeIndex& now : came_) {
            auto [old, last] = gone.equal_range(identityOnVolume(after_, now));
            Pairs pairs;
            while (old != last && (pairs = pairsIfMoved(*old->second, now)).empty())
                ++old;
            if (pairs.empty())
                continue;
            for (const auto& [was, is] : pairs)
                result_.counterparts[is] = was;
            result_.changes.push_back({.kind = ChangeKind::moved, .before = *old->second, .after = now});
            *old->second = now = none;
            gone.erase(old);
        }
    }

    void markIncomparable() {
        auto& marked = result_.incomparable;
        for (const auto& [old, now] : pairs_) {
            if (isKnown(before_, old) == isKnown(after_, now))
                continue;
            for (NodeIndex node = now; node != none; node = after_.parentIndex[node])
                marked.push_back(node);
            std::vector<NodeIndex> inside{now};
            while (!inside.empty()) {
                const auto children = after_.children(inside.back());
                inside.pop_back();
                inside.insert(inside.end(), children.begin(), children.end());
                marked.insert(marked.end(), children.begin(), children.end());
            }
        }
        std::ranges::sort(marked);
        const auto repeated = std::ranges::unique(marked);
        marked.erase(repeated.begin(), repeated.end());
    }

    void addSizeChanges() {
        for (const auto& [old, now] : pairs_) {
            result_.counterparts[now] = old;
            const auto was = before_.allocated(old);
            const auto is = after_.allocated(now);
            if (was != is && result_.isComparable(now))
                result_.changes.push_back(
                    {.kind = is > was ? ChangeKind::grew : ChangeKind::shrank, .before = old, .after = now});
        }
    }

    void addRest(const std::vector<NodeIndex>& nodes, ChangeKind kind) {
        for (const NodeIndex node : nodes) {
            if (node == none)
                continue;
            const bool hasCome = kind == ChangeKind::came;
            result_.changes.push_back(
                {.kind = kind, .before = hasCome ? none : node, .after = hasCome ? node : none});
        }
    }

    void sort() {
        const auto difference = [&](const Change& change) {
            const auto was = bytesBefore(change, before_);
            const auto is = bytesAfter(change, after_);
            return is > was ? is - was : was - is;
        };
        std::ranges::stable_sort(result_.changes, std::ranges::greater(), difference);
    }

    const FileTree& before_;
    const FileTree& after_;
    ScanComparison result_;
    Pairs pairs_; ///< by path, what holds others first
    std::vector<NodeIndex> came_;
    std::vector<NodeIndex> went_;
};

} // namespace

bool ScanComparison::isComparable(NodeIndex ofLaterTree) const {
    return !std::ranges::binary_search(incomparable, ofLaterTree);
}

ScanComparison ScanComparison::between(const FileTree& before, const FileTree& after) {
    return Comparing(before, after).run();
}

std::uint64_t bytesBefore(const Change& change, const FileTree& before) {
    return change.before == FileTree::noParent ? 0 : before.allocated(change.before);
}

std::uint64_t bytesAfter(const Change& change, const FileTree& after) {
    return change.after == FileTree::noParent ? 0 : after.allocated(change.after);
}

} // namespace orbel
