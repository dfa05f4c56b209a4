#include "Delete/ItemChecks.h"

#include "Delete/ItemNote.h"
#include "Delete/Trasher.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace orbel {

namespace {

constexpr auto changed = "Changed since the scan — scan again";

/// What must be known before anything at the item's path is asked.
std::optional<std::string> reasonNotToLook(const DeletionItem& item, const SafetyPolicy& policy) {
    if (item.blockedReason)
        return item.blockedReason;
    // Measuring what a dead server holds would never end.
    if (policy.isOutOfReach(item.path))
        return std::string(SafetyPolicy::onAnotherVolume);
    return std::nullopt;
}

bool isKeptCopyThere(const KeptCopy& keep) {
    const auto current = FileStamp::of(keep.path);
    return current && keep.stamp.isUnchanged(*current);
}

std::optional<std::string> measuredReason(const DeletionItem& item, const TreeScanner::Measurement& measured,
                                          const std::string& homePath) {
    if (measured.protectedInside)
        return "Contains protected data: " + *measured.protectedInside;
    if (measured.otherVolumeInside)
        return "Contains another volume: " + tildePath(*measured.otherVolumeInside, homePath);
    if (item.module == DeletionModule::emptyFolders && (!measured.isEmptyFolder || measured.unreadable > 0))
        return "No longer empty: scan again";
    if (item.module == DeletionModule::rebuildable && measured.versionedInside)
        return "Holds a version-control folder: " + tildePath(*measured.versionedInside, homePath);
    return std::nullopt;
}

} // namespace

bool HeldItem::isAt(const std::string& path) const {
    const auto current = FileStamp::of(path);
    return current && stamp.isUnchanged(*current);
}

std::expected<ApprovedItem, std::string> ItemChecks::approve(const DeletionItem& item) {
    if (auto reason = reasonNotToLook(item, trasher_.policy))
        return std::unexpected(*std::move(reason));
    if (item.keep && (trasher_.policy.isOutOfReach(item.keep->path) || !isKeptCopyThere(*item.keep)))
        return std::unexpected("The copy you are keeping changed or is gone");
    const auto measured = trasher_.measure(item.path);
    if (auto reason = measuredReason(item, measured, trasher_.policy.homePath()))
        return std::unexpected(*std::move(reason));
    // Held before it is checked: from here on, what shows this inode number is the object that was looked at.
    auto held = platform::HeldObject::hold(item.path);
    const auto decision = trasher_.policy.check(item.path, item.root, item.scanStamp);
    const auto* allowance = decision.allowance();
    if (allowance == nullptr)
        return std::unexpected(decision.refusal().value_or(changed));
    if (!held)
        return std::unexpected("Could not move to the Trash: "
                               + std::generic_category().message(held.error()));
    const auto status = held->status();
    if (!status || !allowance->stamp.isUnchanged(FileStamp::of(*status)))
        return std::unexpected(changed);

    ApprovedItem approved{
        {.realPath = allowance->realPath, .stamp = allowance->stamp, .held = *std::move(held)},
        measured.bytes,
        ItemNote::withUnreadable(item.note, measured.unreadable)};
    if (status->type != platform::FileType::directory && status->linkCount > 1)
        approved.note = ItemNote::otherLinks;
    if (auto reason = inUseReason(approved))
        return std::unexpected(*std::move(reason));
    return approved;
}

std::optional<HeldItem> ItemChecks::hold(const DeletionItem& item, PathResolver& paths) const {
    // A path that is no text could not be written into an intent.
    if (trasher_.policy.homeReason() || item.blockedReason || !isValidUtf8(item.path))
        return std::nullopt;
    const auto resolved = paths.resolve(item.path, PathResolver::Last::keep);
    auto held = resolved.isFound() ? platform::HeldObject::hold(item.path) : std::unexpected(ENOENT);
    const auto status = held ? held->status() : std::nullopt;
    if (!status || status->type == platform::FileType::symbolicLink
        || !item.scanStamp.isUnchanged(FileStamp::of(*status)))
        return std::nullopt;
    return HeldItem{.realPath = trasher_.policy.canonicalizer().visiblePath(resolved.path),
                    .stamp = FileStamp::of(*status),
                    .held = *std::move(held)};
}

std::optional<std::string> ItemChecks::inUseReason(const ApprovedItem& item) {
    constexpr std::chrono::seconds longestAge(10);
    const auto now = trasher_.now();
    // A clock that was set back must not make an old snapshot look new.
    if (!snapshot_ || now - snapshot_->takenAt > longestAge || now < snapshot_->takenAt)
        snapshot_ = trasher_.takeMappedSnapshot();
    auto report = trasher_.inUse(item.realPath, item.stamp, *snapshot_);
    if (!report.users.empty())
        return report.reason.value_or("In use");
    uncheckedProcesses_ = std::max(uncheckedProcesses_, report.uncheckedProcesses);
    return std::nullopt;
}

} // namespace orbel
