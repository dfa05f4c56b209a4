#include "Delete/DeletionItem.h"

#include "Delete/ItemNote.h"
#include "Delete/ManageHint.h"
#include "Safety/NeverTouch.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/ProtectedContent.h"
#include "Safety/ReachReason.h"
#include "Safety/SafetyPolicy.h"
#include "Util/PathText.h"
#include "Util/RawValue.h"

#include <string_view>
#include <utility>

namespace orbel {

namespace {

/// `found`: the protected node at or in the item of this index.
std::string protectedDataReason(const FileTree& tree, NodeIndex index, NodeIndex found,
                                const SafetyPolicy& policy) {
    if (NeverTouch::isProtectedName(tree.nameBytes(found)))
        return "Contains protected data (a photo library, keychain or backup)";
    if (const auto meaning = ProtectedContent::meaningOf(tree.nameBytes(found)); meaning && found == index)
        return "Protected: " + std::string(*meaning);
    return "Contains protected data: "
           + tildePath(tree.path(found, PathCanonicalizer::shared()), policy.homePath());
}

std::optional<std::string> blockedReasonFor(const FileTree& tree, NodeIndex index, const DeletionItem& item,
                                            const SafetyPolicy& policy) {
    if (!tree.matchesScan(index, item.scanStamp))
        return "Changed since the scan — scan again";
    if (const auto found = tree.protectedInside(index))
        return protectedDataReason(tree, index, *found, policy);
    if (const auto volume = tree.otherVolumeInside(index); volume && *volume != index)
        return "Contains another volume: "
               + tildePath(tree.path(*volume, PathCanonicalizer::shared()), policy.homePath());
    if (const auto refusal = policy.check(item.path, item.root, item.scanStamp).refusal())
        return ManageHint::explain(item.path, *refusal, policy.homePath());
    return std::nullopt;
}

} // namespace

std::optional<DeletionItem> DeletionItem::fromTree(const FileTree& tree, NodeIndex index,
                                                   DeletionModule module, const SafetyPolicy& policy) {
    const auto path = tree.path(index, PathCanonicalizer::shared());
    const auto root =
        isApplicationBundle(path, policy) ? AllowedRoot::applicationBundle : AllowedRoot::homeItem;
    return fromTree(tree, index, module, policy, path, root);
}

std::optional<DeletionItem> DeletionItem::fromTree(const FileTree& tree, NodeIndex index,
                                                   DeletionModule module, const SafetyPolicy& policy,
                                                   const std::string& path, AllowedRoot root) {
    const bool isOutOfReach = policy.isOutOfReach(path);
    const auto stamp = isOutOfReach ? std::nullopt : FileStamp::of(path);
    auto unreached = isOutOfReach ? std::optional<std::string>(SafetyPolicy::onAnotherVolume)
                                  : reachReason(path, stamp.has_value());
    if (!stamp && !unreached)
        return std::nullopt;
    DeletionItem item{.id = std::string(rawValue(module)) + ":" + path,
                      .module = module,
                      .title = tree.name(index),
                      .detail = path,
                      .path = path,
                      .root = root,
                      .scanStamp = stamp.value_or(FileStamp()),
                      .estimatedBytes = tree.allocated(index)};
    item.blockedReason = unreached ? std::move(unreached) : blockedReasonFor(tree, index, item, policy);
    item.note = noteOn(tree, index);
    return item;
}

std::optional<std::string> DeletionItem::noteOn(const FileTree& tree, NodeIndex index) {
    std::optional<std::string> note;
    if (tree.flags(index).contains(NodeFlags::mayShareBlocks))
        note = ItemNote::sharedStorage;
    else if (tree.linkCount(index) >= 2 && !tree.isFolder(index))
        note = ItemNote::otherLinks;
    return ItemNote::withUnreadable(note, tree.unreadableIn(index));
}

std::optional<DeletionItem> DeletionItem::emptyFolder(const FileTree& tree, NodeIndex index,
                                                      std::size_t nestedCount, const SafetyPolicy& policy) {
    auto item = fromTree(tree, index, DeletionModule::emptyFolders, policy);
    if (item && nestedCount >= 2)
        item->detail += " · holds " + std::to_string(nestedCount) + " empty folders";
    return item;
}

std::optional<DeletionItem> DeletionItem::brokenShortcut(const FileTree& tree, NodeIndex index,
                                                         const SafetyPolicy& policy,
                                                         std::optional<std::string> blockedReason,
                                                         std::optional<std::string> note,
                                                         std::optional<std::string> lastPath) {
    const auto path = tree.path(index, PathCanonicalizer::shared());
    const bool isLeftover = path.ends_with(".desktop") && policy.isLeftoverPlace(path);
    auto item = fromTree(tree, index, DeletionModule::brokenShortcuts, policy, path,
                         isLeftover ? AllowedRoot::leftover : AllowedRoot::homeItem);
    if (!item)
        return std::nullopt;
    if (lastPath)
        item->detail += " → " + *lastPath;
    if (blockedReason)
        item->blockedReason = std::move(blockedReason);
    if (note)
        item->note = std::move(note);
    return item;
}

bool DeletionItem::isApplicationBundle(const std::string& path, const SafetyPolicy& policy) {
    return policy.isApplication(path);
}

} // namespace orbel
