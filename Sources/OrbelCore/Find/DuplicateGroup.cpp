#include "Find/DuplicateGroup.h"

#include "Delete/ItemNote.h"
#include "Delete/ManageHint.h"
#include "Find/DuplicateFinder.h"
#include "Platform/FileContent.h"
#include "Safety/NeverTouch.h"
#include "Safety/ReachReason.h"
#include "Safety/SafetyPolicy.h"
#include "Util/PathText.h"
#include "Util/RawValue.h"
#include "Util/Utf8.h"

#include <algorithm>

namespace orbel {

namespace {

constexpr auto changed = "Changed since the scan — scan again";
constexpr auto keptCopyChanged = "The copy you are keeping changed or is gone";

bool isUnchanged(const DuplicateFile& file) {
    const auto current = FileStamp::of(file.path);
    return current && file.stamp.isUnchanged(*current);
}

/// `keepable` is not empty.
const DuplicateFile& copyToKeep(const std::vector<DuplicateFile>& keepable, const std::string& suggested) {
    const auto at = [&](const std::string& path) {
        return std::ranges::find(keepable, path, &DuplicateFile::path);
    };
    auto preferred = at(suggested);
    if (preferred == keepable.end())
        preferred = at(DuplicateFinder::suggestKeep(keepable));
    if (isUnchanged(*preferred))
        return *preferred;
    const auto other = std::ranges::find_if(keepable, isUnchanged);
    return other != keepable.end() ? *other : *preferred;
}

std::optional<std::string> blockedReasonFor(const DeletionItem& item, const platform::FileStatus& status,
                                            const SafetyPolicy& policy) {
    if (!item.scanStamp.isUnchanged(FileStamp::of(status)))
        return changed;
    if (NeverTouch::isProtectedName(lastPathComponent(item.path)))
        return "Contains protected data (a photo library, keychain or backup)";
    auto seen = policy.seenFolders();
    if (const auto refusal = policy.check(item.path, item.root, item.scanStamp, seen).refusal())
        return ManageHint::explain(item.path, *refusal, policy.homePath(), &seen);
    return std::nullopt;
}

std::optional<std::string> noteFor(const DuplicateFile& file, const platform::FileStatus& status) {
    if (file.mayShareStorage())
        return std::string(ItemNote::sharedStorage);
    if (status.linkCount >= 2)
        return std::string(ItemNote::otherLinks);
    return std::nullopt;
}

} // namespace

bool DuplicateFile::mayShareStorage() const {
    return mayShareBlocks || platform::sharesBlocks(path);
}

std::optional<DeletionItem> DuplicateGroup::itemOf(const DuplicateFile& file, const SafetyPolicy& policy) {
    const auto status = platform::fileStatus(file.path);
    auto unreached = reachReason(file.path);
    if (!status && !unreached)
        return std::nullopt;
    DeletionItem item{.id = std::string(rawValue(DeletionModule::duplicates)) + ":" + file.path,
                      .module = DeletionModule::duplicates,
                      .title = lossyUtf8(lastPathComponent(file.path)),
                      .detail = file.path,
                      .path = file.path,
                      .root = DeletionItem::isApplicationBundle(file.path, policy)
                                  ? AllowedRoot::applicationBundle
                                  : AllowedRoot::homeItem,
                      .scanStamp = file.stamp,
                      .estimatedBytes = status ? status->allocatedBytes : 0,
                      .blockedReason = std::move(unreached)};
    if (!item.blockedReason)
        item.blockedReason = blockedReasonFor(item, *status, policy);
    if (status)
        item.note = noteFor(file, *status);
    return item;
}

std::optional<std::vector<DeletionItem>>
DuplicateGroup::deletionItems(const std::unordered_set<std::string>& ticked, const SafetyPolicy& policy,
                              const std::optional<std::string>& keep) const {
    std::vector<DuplicateFile> keepable;
    std::ranges::remove_copy_if(files, std::back_inserter(keepable), [&](const DuplicateFile& file) {
        return ticked.contains(file.path) || (keep && file.path != *keep);
    });
    if (keepable.empty())
        return std::nullopt;
    const DuplicateFile& kept = copyToKeep(keepable, suggestedKeep);
    const bool isKeptCopySure = isUnchanged(kept);

    std::vector<DeletionItem> items;
    for (const DuplicateFile& file : files) {
        if (!ticked.contains(file.path))
            continue;
        auto item = itemOf(file, policy);
        if (!item)
            continue;
        item->keep = {.path = kept.path, .stamp = kept.stamp};
        if (!isKeptCopySure)
            item->blockedReason = keptCopyChanged;
        items.push_back(*std::move(item));
    }
    return items;
}

} // namespace orbel
