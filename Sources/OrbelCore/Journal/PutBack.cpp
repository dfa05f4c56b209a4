#include "Journal/PutBack.h"

#include "Journal/PutBackPlaces.h"
#include "Journal/PutBackRun.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace orbel {

namespace {

constexpr auto folderGone = "The original folder no longer exists or moved";
constexpr auto occupied = "Something already exists at the original location";

/// A line that was missing may stand after those of a newer session, so the times decide; of equal ones,
/// the later line.
std::vector<const JournalEntry*> newestFirst(const std::vector<JournalEntry>& entries) {
    std::vector<const JournalEntry*> sorted;
    for (const auto& entry : entries | std::views::reverse)
        sorted.push_back(&entry);
    std::ranges::stable_sort(sorted, std::ranges::greater(), &JournalEntry::time);
    return sorted;
}

/// Those of a session, the last one first.
std::vector<JournalEntry> entriesOf(const std::string& sessionID, const std::vector<JournalEntry>& entries) {
    std::vector<JournalEntry> found;
    for (const auto& entry : entries | std::views::reverse)
        if (entry.sessionID == sessionID)
            found.push_back(entry);
    return found;
}

PutBackResult resultFor(const JournalEntry& entry) {
    return {.title = entry.title, .path = entry.originalPath};
}

} // namespace

std::string PutBackResult::explanation() const {
    return reason.value_or("") + (journalFailure ? " (" + *journalFailure + ")" : "");
}

PutBack::PutBack(SafetyPolicy policy, std::shared_ptr<JournalStore> journal,
                 std::shared_ptr<RestoreOperations> restore,
                 std::optional<std::vector<std::string>> trashFolders, Clock now)
    : policy_(std::move(policy)),
      journal_(std::move(journal)),
      restore_(std::move(restore)),
      trashFolders_(trashFolders ? *std::move(trashFolders) : policy_.trashFolders()),
      now_(std::move(now)) {}

std::optional<PutBackResult> PutBack::putBackEntry(const std::string& entryID) const {
    const auto restorable = journal_->restorable();
    const auto found = std::ranges::find(restorable, entryID, &JournalEntry::id);
    if (found == restorable.end())
        return std::nullopt;
    return putBack(*found);
}

std::vector<PutBackResult> PutBack::putBackSession(const std::string& sessionID,
                                                   const IsCancelled& isCancelled) const {
    return Run(*this, isCancelled).over(entriesOf(sessionID, journal_->restorable()));
}

PutBackSession PutBack::putBackLast(const IsCancelled& isCancelled) const {
    const auto restorable = journal_->restorable();
    const auto byTime = newestFirst(restorable);
    if (byTime.empty())
        return {};
    const auto possible = std::ranges::find_if(
        byTime, [this](const JournalEntry* entry) { return !reasonNotToRestore(*entry); });
    PutBackSession last{.sessionID = (possible == byTime.end() ? byTime.front() : *possible)->sessionID,
                        .results = {}};
    const auto entries = entriesOf(last.sessionID, restorable);
    if (possible != byTime.end()) {
        last.results = Run(*this, isCancelled).over(entries);
        return last;
    }
    for (const auto& entry : entries) {
        last.results.push_back(resultFor(entry));
        last.results.back().reason = reasonNotToRestore(entry);
    }
    return last;
}

PutBackResult PutBack::putBack(const JournalEntry& entry) const {
    return Run(*this, nullptr).over({&entry, 1}).front();
}

std::optional<std::string> PutBack::reasonNotToRestore(const JournalEntry& entry) const {
    return outlook(entry).reason;
}

PutBackOutlook PutBack::outlook(const JournalEntry& entry) const {
    const auto destination = destinationOf(entry);
    return destination ? PutBackOutlook() : destination.error();
}

PutBackOutlook PutBack::outlookInTrash(const JournalEntry& entry) const {
    using Kind = PutBackOutlook::Kind;
    if (entry.result != JournalEntry::Result::trashed || !entry.trashPath || !entry.trashedIdentity)
        return {.kind = Kind::refused, .reason = "Nothing to put back"};
    if (policy_.isOutOfReach(*entry.trashPath))
        return {.kind = Kind::refused, .reason = std::string(SafetyPolicy::onAnotherVolume)};
    const auto identity = TrashedIdentity::of(*entry.trashPath);
    if (!identity)
        return {.kind = Kind::gone, .reason = "No longer in the Trash (emptied or moved)"};
    if (!isSameObject(*entry.trashedIdentity, *identity))
        return {.kind = Kind::gone, .reason = TrashedObject::isAnother};
    if (!isInTrashFolder(*entry.trashPath))
        return {.kind = Kind::gone, .reason = "Not in a Trash folder"};
    return {};
}

std::expected<Destination, PutBackOutlook> PutBack::destinationOf(const JournalEntry& entry) const {
    using Kind = PutBackOutlook::Kind;
    const auto refused = [](Kind kind, std::string reason) {
        return std::unexpected(PutBackOutlook{.kind = kind, .reason = std::move(reason)});
    };
    if (auto inTrash = outlookInTrash(entry); inTrash.reason)
        return std::unexpected(std::move(inTrash));
    // A volume whose server may never answer was mounted over its folder since.
    if (policy_.isOutOfReach(entry.originalPath))
        return refused(Kind::refused, folderGone);
    // A link that leads nowhere is something too.
    if (platform::fileStatus(entry.originalPath))
        return refused(Kind::occupied, occupied);
    const auto folder = policy_.canonical(std::string(parentPath(entry.originalPath)));
    if (!folder || folder != entry.originalParentRealPath)
        return refused(Kind::refused, folderGone);
    auto destination = Destination::open(entry);
    if (!destination)
        return refused(Kind::refused, folderGone);
    if (destination->isTaken())
        return refused(Kind::occupied, occupied);
    if (auto reason =
            policy_.restoreDestinationReason(entry.originalPath, rootForDestination(entry.originalPath)))
        return refused(Kind::refused, *std::move(reason));
    // What the policy was asked about by its path must be what is held.
    if (!destination->isAtItsPath())
        return refused(Kind::refused, folderGone);
    return *std::move(destination);
}

AllowedRoot PutBack::rootForDestination(const std::string& path) const {
    const auto place = joinedPath(canonicalOrAsWritten(parentPath(path)), lastPathComponent(path));
    if (policy_.isApplicationPlace(place))
        return AllowedRoot::applicationBundle;
    return policy_.isLeftoverPlace(place) ? AllowedRoot::leftover : AllowedRoot::homeItem;
}

bool PutBack::isInTrashFolder(const std::string& path) const {
    const auto item = canonicalOrAsWritten(path);
    return std::ranges::any_of(trashFolders_, [&](const std::string& trashFolder) {
        const auto folder = canonicalOrAsWritten(trashFolder);
        return item != folder && RealPath::isInside(item, folder);
    });
}

std::string PutBack::canonicalOrAsWritten(std::string_view path) const {
    const std::string asWritten(path);
    return policy_.canonical(asWritten).value_or(asWritten);
}

} // namespace orbel
