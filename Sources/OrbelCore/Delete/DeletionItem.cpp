#include "Delete/DeletionItem.h"

#include "Delete/ExclusionReason.h"
#include "Delete/ItemNote.h"
#include "Delete/ManageHint.h"
#include "Safety/NeverTouch.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/ProtectedContent.h"
#include "Safety/ReachReason.h"
#include "Safety/SafetyPolicy.h"
#include "Util/PathText.h"
#include "Util/RawValue.h"
#include "Util/Utf8.h"

#include <string_view>
#include <utility>

namespace orbel {

namespace {

/// Why an item of this name stays, or absent.
std::optional<std::string> nameReason(std::string_view name) {
    if (NeverTouch::isProtectedName(name))
        return "Contains protected data (a photo library, keychain or backup)";
    const auto meaning = ProtectedContent::meaningOf(name);
    return meaning ? std::optional("Protected: " + std::string(*meaning)) : std::nullopt;
}

/// `found`: the protected node at or in the item of this index.
std::string protectedDataReason(const FileTree& tree, NodeIndex index, NodeIndex found,
                                const SafetyPolicy& policy) {
    const auto name = tree.nameBytes(found);
    if (auto reason = nameReason(name); reason && (found == index || NeverTouch::isProtectedName(name)))
        return *std::move(reason);
    return "Contains protected data: "
           + tildePath(tree.path(found, PathCanonicalizer::shared()), policy.homePath());
}

std::optional<std::string> refusalOf(const DeletionItem& item, const SafetyPolicy& policy,
                                     SafetyPolicy::SeenFolders& seen) {
    const auto refusal = policy.check(item.path, item.root, item.scanStamp, seen).refusal();
    return refusal ? std::optional(ManageHint::explain(item.path, *refusal, policy.homePath(), &seen))
                   : std::nullopt;
}

std::optional<std::string> blockedReasonFor(const FileTree& tree, NodeIndex index, const DeletionItem& item,
                                            const SafetyPolicy& policy, SafetyPolicy::SeenFolders& seen) {
    if (auto reason = exclusionReason(tree, index, policy.homePath()))
        return reason;
    if (!tree.matchesScan(index, item.scanStamp))
        return "Changed since the scan — scan again";
    if (const auto found = tree.protectedInside(index))
        return protectedDataReason(tree, index, *found, policy);
    if (const auto volume = tree.otherVolumeInside(index); volume && *volume != index)
        return "Contains another volume: "
               + tildePath(tree.path(*volume, PathCanonicalizer::shared()), policy.homePath());
    return refusalOf(item, policy, seen);
}

} // namespace

std::optional<DeletionItem> DeletionItem::fromTree(const FileTree& tree, NodeIndex index,
                                                   DeletionModule module, const SafetyPolicy& policy) {
    auto seen = policy.seenFolders();
    return fromTree(tree, index, module, policy, seen);
}

std::optional<DeletionItem> DeletionItem::fromTree(const FileTree& tree, NodeIndex index,
                                                   DeletionModule module, const SafetyPolicy& policy,
                                                   SafetyPolicy::SeenFolders& seen) {
    const auto path = tree.path(index, PathCanonicalizer::shared());
    const auto root =
        isApplicationBundle(path, policy) ? AllowedRoot::applicationBundle : AllowedRoot::homeItem;
    return fromTree(tree, index, module, policy, seen, path, root);
}

std::optional<DeletionItem> DeletionItem::fromTree(const FileTree& tree, NodeIndex index,
                                                   DeletionModule module, const SafetyPolicy& policy,
                                                   SafetyPolicy::SeenFolders& seen, const std::string& path,
                                                   AllowedRoot root) {
    const bool isOutOfReach = policy.isOutOfReach(path);
    const auto stamp = isOutOfReach ? std::nullopt : FileStamp::of(path);
    auto unreached = isOutOfReach ? std::optional<std::string>(SafetyPolicy::onAnotherVolume)
                                  : reachReason(path, stamp.has_value());
    if (!stamp && !unreached)
        return std::nullopt;
    auto item = unasked(path, module, root, stamp.value_or(FileStamp()), tree.allocated(index));
    item.blockedReason = unreached ? std::move(unreached) : blockedReasonFor(tree, index, item, policy, seen);
    item.note = noteOn(tree, index);
    return item;
}

DeletionItem DeletionItem::fromFile(const std::string& path, const platform::FileStatus& status,
                                    DeletionModule module, const SafetyPolicy& policy,
                                    SafetyPolicy::SeenFolders& seen) {
    const auto root =
        isApplicationBundle(path, policy) ? AllowedRoot::applicationBundle : AllowedRoot::homeItem;
    auto item = unasked(path, module, root, FileStamp::of(status), status.allocatedBytes);
    item.blockedReason = nameReason(lastPathComponent(path));
    if (!item.blockedReason)
        item.blockedReason = refusalOf(item, policy, seen);
    if (status.linkCount >= 2)
        item.note = ItemNote::otherLinks;
    return item;
}

DeletionItem DeletionItem::unasked(const std::string& path, DeletionModule module, AllowedRoot root,
                                   const FileStamp& stamp, std::uint64_t bytes) {
    return {.id = std::string(rawValue(module)) + ":" + path,
            .module = module,
            .title = lossyUtf8(lastPathComponent(path)),
            .detail = path,
            .path = path,
            .root = root,
            .scanStamp = stamp,
            .estimatedBytes = bytes};
}

DeletionItem DeletionItem::shownOnly(const FileTree& tree, NodeIndex index, DeletionModule module) {
    auto item = unasked(tree.path(index, PathCanonicalizer::shared()), module, AllowedRoot::homeItem, {},
                        tree.allocated(index));
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
                                                      std::size_t nestedCount, const SafetyPolicy& policy,
                                                      SafetyPolicy::SeenFolders& seen) {
    auto item = fromTree(tree, index, DeletionModule::emptyFolders, policy, seen);
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
    auto seen = policy.seenFolders();
    auto item = fromTree(tree, index, DeletionModule::brokenShortcuts, policy, seen, path,
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
