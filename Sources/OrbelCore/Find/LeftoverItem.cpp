#include "Find/LeftoverItem.h"

#include "Delete/ItemNote.h"
#include "Delete/ManageHint.h"
#include "Safety/SafetyPolicy.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

namespace orbel {

namespace {

/// In an item's detail, behind the path.
constexpr std::string_view between = " · ";

} // namespace

DeletionItem LeftoverItem::at(const std::string& path, const std::string& evidence) {
    return {.id = std::string(rawValue(DeletionModule::uninstall)) + ":" + path,
            .module = DeletionModule::uninstall,
            .title = lossyUtf8(lastPathComponent(path)),
            .detail = evidence.empty() ? path : path + std::string(between) + evidence,
            .path = path,
            .root = AllowedRoot::leftover,
            .scanStamp = FileStamp::of(path).value_or(FileStamp())};
}

void LeftoverItem::check(DeletionItem& item, const SafetyPolicy& policy, const Measure& measure) {
    if (const auto refusal = policy.check(item.path, item.root, item.scanStamp).refusal()) {
        item.blockedReason = ManageHint::explain(item.path, *refusal, policy.homePath());
        return;
    }
    const auto measured = measure ? measure(item.path) : TreeScanner::measure(item.path);
    item.estimatedBytes = measured.bytes;
    item.note = ItemNote::withUnreadable(item.note, measured.unreadable);
    if (measured.protectedInside)
        item.blockedReason =
            "Contains protected data: " + tildePath(*measured.protectedInside, policy.homePath());
    else if (measured.otherVolumeInside)
        item.blockedReason =
            "Contains another volume: " + tildePath(*measured.otherVolumeInside, policy.homePath());
}

std::string_view LeftoverItem::evidence(const DeletionItem& item) {
    std::string_view detail = item.detail;
    if (!detail.starts_with(item.path))
        return detail;
    detail.remove_prefix(item.path.size());
    return detail.starts_with(between) ? detail.substr(between.size()) : detail;
}

} // namespace orbel
