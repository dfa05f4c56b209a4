#include "Scan/FileTree.h"
#include "Util/Check.h"

#include <algorithm>
#include <iterator>

namespace orbel {

namespace {

constexpr NodeIndex none = FileTree::noParent;

/// Which nodes of the old tree stay, and where every node of both trees goes. Parents stay before their
/// children: first what stays outside the folder, then what was found in it, then what was detached from it.
class Plan {
public:
    Plan(const FileTree& old, NodeIndex folder, const FileTree& fresh)
        : old_(old), folder_(folder), fresh_(fresh), inside_(old.count()), newIndex_(old.count(), none) {
        for (NodeIndex i = 1; i < old.count(); ++i) {
            const NodeIndex holder = holderOf(i);
            inside_[i] = holder == folder || inside_[holder];
        }
        for (NodeIndex i = 0; i < old.count(); ++i) {
            if (!inside_[i])
                newIndex_[i] = count_++;
        }
        freshStart_ = count_;
        count_ += static_cast<NodeIndex>(fresh.count() - 1);
        for (NodeIndex i = 0; i < old.count(); ++i) {
            if (inside_[i] && isKeptDetached(i)) {
                kept_.push_back(i);
                newIndex_[i] = count_++;
            }
        }
    }

    NodeIndex count() const { return count_; }
    bool isInside(NodeIndex old) const { return inside_[old]; }
    /// `none` for a node that does not stay.
    NodeIndex ofOld(NodeIndex old) const { return newIndex_[old]; }
    NodeIndex ofFresh(NodeIndex fresh) const {
        return fresh == 0 ? newIndex_[folder_] : freshStart_ + fresh - 1;
    }
    /// What was detached from the folder and stays, so that it can be attached again.
    const std::vector<NodeIndex>& kept() const { return kept_; }
    /// Where the holder of a node that stays goes.
    NodeIndex holderAfter(NodeIndex old) const {
        const NodeIndex holder = holderOf(old);
        return newIndex_[holder] != none ? newIndex_[holder] : ofFresh(inFresh(holder));
    }

private:
    NodeIndex holderOf(NodeIndex node) const {
        return old_.parentIndex[node] != none ? old_.parentIndex[node] : old_.detachedFrom.at(node);
    }

    NodeIndex freshChild(NodeIndex folder, std::string_view name) const {
        for (const NodeIndex child : fresh_.children(folder)) {
            if (fresh_.nameBytes(child) == name)
                return child;
        }
        return none;
    }

    /// The node of the fresh tree where a node inside the folder was; `none` when there is none any more.
    NodeIndex inFresh(NodeIndex node) const {
        if (node == folder_)
            return 0;
        const NodeIndex holder = inFresh(holderOf(node));
        return holder == none ? none : freshChild(holder, old_.nameBytes(node));
    }

    /// What was detached stays as long as it can come back: its folder is still there, and its place is free.
    bool isKeptDetached(NodeIndex node) const {
        if (fresh_.isExcluded(0)) // nothing is known of what is in it any more
            return false;
        if (!old_.detachedFrom.contains(node))
            return old_.parentIndex[node] != folder_ && newIndex_[old_.parentIndex[node]] != none
                   && inside_[old_.parentIndex[node]];
        const NodeIndex holder = old_.detachedFrom.at(node);
        if (holder != folder_ && newIndex_[holder] != none)
            return true;
        const NodeIndex place = inFresh(holder);
        return place != none && fresh_.isFolder(place) && freshChild(place, old_.nameBytes(node)) == none;
    }

    const FileTree& old_;
    NodeIndex folder_;
    const FileTree& fresh_;
    std::vector<bool> inside_;
    std::vector<NodeIndex> newIndex_;
    std::vector<NodeIndex> kept_;
    NodeIndex freshStart_ = 0;
    NodeIndex count_ = 0;
};

/// Appends nodes of other trees to the columns of one.
class Appender {
public:
    Appender(FileTree& tree, std::size_t nodes, std::size_t nameBytes) : tree_(tree) {
        tree.names.reserve(nameBytes);
        tree.nameStart.reserve(nodes);
        tree.nameLength.reserve(nodes);
        tree.parentIndex.reserve(nodes);
        tree.allocatedBytes.reserve(nodes);
        tree.logicalBytes.reserve(nodes);
        tree.modifiedMinutes.reserve(nodes);
        tree.inodes.reserve(nodes);
        tree.linkCounts.reserve(nodes);
        tree.nodeFlags.reserve(nodes);
        tree.kinds.reserve(nodes);
    }

    void add(const FileTree& from, NodeIndex node, NodeIndex parent) {
        tree_.append({.parent = parent,
                      .name = from.nameBytes(node),
                      .allocated = from.allocatedBytes[node],
                      .logical = from.logicalBytes[node],
                      .modifiedMinutes = from.modifiedMinutes[node],
                      .inode = from.inodes[node],
                      .linkCount = from.linkCounts[node],
                      .flags = from.flags(node),
                      .kind = from.kind(node)});
    }

private:
    FileTree& tree_;
};

/// The nodes of the old tree that the fresh one takes the place of, counted by one flag.
std::uint64_t replacedWith(NodeFlags flag, const FileTree& old, NodeIndex folder, const Plan& plan) {
    std::uint64_t count = 0;
    for (NodeIndex i = 0; i < old.count(); ++i) {
        const bool isReplaced = i == folder || (plan.isInside(i) && plan.ofOld(i) == none);
        count += isReplaced && NodeFlags{old.nodeFlags[i]}.contains(flag) ? 1 : 0;
    }
    return count;
}

std::uint64_t exchanged(std::uint64_t all, std::uint64_t old, std::uint64_t fresh) {
    return all - std::min(all, old) + fresh;
}

void joinOtherDevices(FileTree& made, const FileTree& old, const FileTree& fresh, const Plan& plan) {
    for (const auto& [node, device] : old.otherDevices) {
        if (plan.ofOld(node) != none)
            made.otherDevices[plan.ofOld(node)] = device;
    }
    for (const auto& [node, device] : fresh.otherDevices)
        made.otherDevices[plan.ofFresh(node)] = device;
}

/// What is left out of both trees. Returns how many nodes of it the fresh tree takes the place of.
std::uint64_t joinExcluded(FileTree& made, const FileTree& old, NodeIndex folder, const FileTree& fresh,
                           const Plan& plan) {
    std::uint64_t replaced = 0;
    for (const NodeIndex node : old.excludedNodes) {
        if (node != folder && plan.ofOld(node) != none)
            made.excludedNodes.insert(plan.ofOld(node));
        else
            ++replaced;
    }
    for (const NodeIndex node : fresh.excludedNodes)
        made.excludedNodes.insert(plan.ofFresh(node));
    return replaced;
}

/// The entries of both trees that are no nodes. Returns how many those are that the fresh tree takes
/// the place of.
std::uint64_t joinUnlistedEntries(FileTree& made, const FileTree& old, NodeIndex folder,
                                  const FileTree& fresh, const Plan& plan) {
    std::uint64_t replaced = 0;
    for (const auto& [node, entries] : old.unlistedEntries) {
        if (node != folder && plan.ofOld(node) != none)
            made.unlistedEntries[plan.ofOld(node)] = entries;
        else
            replaced += entries;
    }
    for (const auto& [node, entries] : fresh.unlistedEntries)
        made.unlistedEntries[plan.ofFresh(node)] = entries;
    return replaced;
}

/// The groups of hard links of both trees as one. The fresh tree knows better how large a file is and how
/// many links it has, and may have found a further link of a file that had only one before.
void joinHardLinks(FileTree& made, const FileTree& old, const FileTree& fresh, const Plan& plan) {
    for (const auto& [file, members] : old.hardLinkMembers) {
        for (const NodeIndex member : members) {
            if (plan.ofOld(member) != none)
                made.hardLinkMembers[file].push_back(plan.ofOld(member));
        }
        if (const auto size = old.hardLinkSizes.find(file);
            size != old.hardLinkSizes.end() && made.hardLinkMembers.contains(file))
            made.hardLinkSizes.insert(*size);
    }
    std::unordered_map<FileIdentity, std::uint16_t> incomplete;
    for (const auto& [file, members] : fresh.hardLinkMembers) {
        auto& all = made.hardLinkMembers[file];
        const auto links = fresh.linkCounts[members.front()];
        for (const NodeIndex member : all)
            made.linkCounts[member] = links;
        for (const NodeIndex member : members)
            all.push_back(plan.ofFresh(member));
        made.hardLinkSizes[file] = fresh.hardLinkSizes.at(file);
        if (all.size() < links)
            incomplete[file] = links;
    }
    for (NodeIndex i = 0; !incomplete.empty() && i < old.count(); ++i) {
        if (plan.ofOld(i) == none || old.linkCounts[i] >= 2
            || NodeFlags{old.nodeFlags[i]}.intersects(NodeFlags::folder | NodeFlags::otherVolume))
            continue;
        const auto group = incomplete.find(old.identity(i));
        if (group == incomplete.end())
            continue;
        made.linkCounts[plan.ofOld(i)] = group->second;
        made.hardLinkMembers[group->first].push_back(plan.ofOld(i));
    }
    for (auto& [file, members] : made.hardLinkMembers)
        std::ranges::sort(members);
}

} // namespace

FileTree FileTree::spliced(NodeIndex folder, const FileTree& fresh) const {
    const bool hasPlace = folder != 0 && isAttached(folder) && isFolder(folder);
    ORBEL_CHECK(hasPlace, "an attached folder below the root");
    const bool isMeasured = fresh.count() > 0 && fresh.isFolder(0);
    ORBEL_CHECK(isMeasured, "a measured folder");
    ORBEL_CHECK(count() + fresh.count() < noParent, "fewer nodes than a 32-bit index can tell apart");
    const Plan plan(*this, folder, fresh);

    FileTree made(rootPath, requestedRootPath);
    made.exclusions = exclusions;
    Appender appender(made, plan.count(), names.size() + fresh.names.size());
    for (NodeIndex i = 0; i < count(); ++i) {
        if (!plan.isInside(i))
            appender.add(*this, i, parentIndex[i] == noParent ? noParent : plan.ofOld(parentIndex[i]));
    }
    for (NodeIndex i = 1; i < fresh.count(); ++i)
        appender.add(fresh, i, plan.ofFresh(fresh.parentIndex[i]));
    for (const NodeIndex i : plan.kept())
        appender.add(*this, i, parentIndex[i] == noParent ? noParent : plan.ofOld(parentIndex[i]));

    // What the folder is called, and that it is a package because of it, the fresh tree does not know.
    const NodeIndex place = plan.ofOld(folder);
    made.logicalBytes[place] = fresh.logicalBytes[0];
    made.modifiedMinutes[place] = fresh.modifiedMinutes[0];
    made.inodes[place] = fresh.inodes[0];
    made.linkCounts[place] = fresh.linkCounts[0];
    const NodeFlags before{nodeFlags[folder]};
    const NodeFlags now{fresh.nodeFlags[0]};
    made.nodeFlags[place] = (before.contains(NodeFlags::package) ? now | NodeFlags::package : now).rawValue;

    for (const auto& [node, holder] : detachedFrom) {
        if (plan.ofOld(node) != noParent)
            made.detachedFrom[plan.ofOld(node)] = plan.holderAfter(node);
    }
    for (const NodeIndex node : aliasNodes) {
        if (plan.ofOld(node) != noParent)
            made.aliasNodes.insert(plan.ofOld(node));
    }
    for (const NodeIndex node : fresh.aliasNodes)
        made.aliasNodes.insert(plan.ofFresh(node));
    const auto excludedBefore = joinExcluded(made, *this, folder, fresh, plan);
    joinOtherDevices(made, *this, fresh, plan);
    const auto unlistedBefore = joinUnlistedEntries(made, *this, folder, fresh, plan);
    const auto count = [&](std::uint64_t FileTree::*sum, NodeFlags flag, std::uint64_t besides) {
        made.*sum = exchanged(this->*sum, replacedWith(flag, *this, folder, plan) + besides, fresh.*sum);
    };
    made.device = device;
    count(&FileTree::unreadableCount, NodeFlags::unreadable, unlistedBefore);
    count(&FileTree::datalessCount, NodeFlags::dataless, 0);
    made.otherVolumeCount = exchanged(
        otherVolumeCount, replacedWith(NodeFlags::otherVolume, *this, folder, plan) - excludedBefore,
        fresh.otherVolumeCount);

    joinHardLinks(made, *this, fresh, plan);
    made.assignHardLinkOwners();
    made.recomputeTotals();
    made.markProtectedData();
    return made;
}

FileTree FileTree::leavingOut(NodeIndex folder) const {
    FileTree alone(walkedPath(folder));
    Appender(alone, 1, 0).add(*this, folder, noParent);
    alone.names.clear();
    alone.nameLength[0] = 0;
    constexpr NodeFlags contents = NodeFlags::unreadable | NodeFlags::dataless;
    alone.allocatedBytes[0] = 0;
    alone.nodeFlags[0] = flags(folder).without(contents).with(NodeFlags::otherVolume).rawValue;
    alone.device = device;
    alone.excludedNodes.insert(0);
    alone.finalize({});
    return spliced(folder, alone);
}

} // namespace orbel
