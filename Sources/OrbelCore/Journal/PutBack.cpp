#include "Journal/PutBack.h"

#include "Journal/PutBackPlaces.h"
#include "Journal/PutBackRun.h"
#include "Journal/Restorable.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <algorithm>
#include <utility>

namespace orbel {

namespace {

constexpr auto folderGone = "The original folder no longer exists or moved";
constexpr auto occupied = "Something already exists at the original location";

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
    const auto found = restorable([&](const JournalEntry& entry) { return entry.id == entryID; });
    if (!found || found->empty())
        return std::nullopt;
    return putBack(found->front());
}

std::vector<PutBackResult> PutBack::putBackSession(const std::string& sessionID,
                                                   const IsCancelled& isCancelled) const {
    auto found = restorable([&](const JournalEntry& entry) { return entry.sessionID == sessionID; });
    if (!found)
        return {};
    std::ranges::reverse(*found);
    return Run(*this, isCancelled).over(*found);
}

PutBackSession PutBack::putBackEntryOrSession(const std::string& id, const IsCancelled& isCancelled) const {
    auto found =
        restorable([&](const JournalEntry& entry) { return entry.id == id || entry.sessionID == id; });
    if (!found)
        return {.journalFailure = std::move(found.error().words)};
    if (const auto entry = std::ranges::find(*found, id, &JournalEntry::id); entry != found->end())
        return {.sessionID = entry->sessionID, .results = {putBack(*entry)}};
    std::ranges::reverse(*found);
    return {.sessionID = id, .results = Run(*this, isCancelled).over(*found)};
}

PutBackSession PutBack::putBackLast(const IsCancelled& isCancelled) const {
    const auto failed = [](JournalError error) {
        return PutBackSession{.journalFailure = std::move(error.words)};
    };
    auto lines = journal_->lines();
    if (!lines)
        return failed(std::move(lines.error()));
    const auto index = RestorableIndex::of(*std::move(lines));
    if (!index)
        return failed(index.error());
    if (index->newestFirst().empty())
        return {};
    const auto possible = newestPossible(*index);
    if (!possible)
        return failed(possible.error());
    const auto entries = index->entriesOf(possible->value_or(index->newestFirst().front().session));
    if (!entries)
        return failed(entries.error());
    PutBackSession last{.sessionID = entries->empty() ? "" : entries->front().sessionID};
    if (*possible) {
        last.results = Run(*this, isCancelled).over(*entries);
        return last;
    }
    for (const auto& entry : *entries) {
        last.results.push_back(resultFor(entry));
        last.results.back().reason = reasonNotToRestore(entry);
    }
    return last;
}

std::expected<std::vector<JournalEntry>, JournalError>
PutBack::restorable(const std::function<bool(const JournalEntry&)>& isWanted) const {
    const auto lines = journal_->lines();
    if (!lines)
        return std::unexpected(lines.error());
    return readRestorable(*lines, isWanted);
}

/// The session of the newest entry that can come back now. Most of an old journal is not in the Trash any
/// more, which many threads find out together; what is there is looked at closely one after another.
std::expected<std::optional<std::uint32_t>, JournalError>
PutBack::newestPossible(const RestorableIndex& index) const {
    constexpr std::size_t entriesAtATime = 64;
    const auto all = index.newestFirst();
    using InTrash = std::vector<std::pair<JournalEntry, std::uint32_t>>;
    std::expected<std::optional<std::uint32_t>, JournalError> possible;
    mapInOrder((all.size() + entriesAtATime - 1) / entriesAtATime,
               [&](std::size_t task) -> std::expected<InTrash, JournalError> {
                   InTrash inTrash;
                   auto paths = policy_.resolver();
                   const auto begin = task * entriesAtATime;
                   for (const auto& place :
                        all.subspan(begin, std::min(entriesAtATime, all.size() - begin))) {
                       auto entries = index.entriesAt({&place, 1});
                       if (!entries)
                           return std::unexpected(std::move(entries.error()));
                       for (auto& entry : *entries)
                           if (!outlookInTrash(entry, paths).reason)
                               inTrash.emplace_back(std::move(entry), place.session);
                   }
                   return inTrash;
               },
               [&](std::expected<InTrash, JournalError> inTrash) {
                   if (!inTrash) {
                       possible = std::unexpected(std::move(inTrash.error()));
                       return false;
                   }
                   for (const auto& [entry, session] : *inTrash)
                       if (!reasonNotToRestore(entry)) {
                           possible = session;
                           return false;
                       }
                   return true;
               });
    return possible;
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

PutBackOutlook PutBack::outlookInTrash(const JournalEntry& entry, PathResolver& paths) const {
    using Kind = PutBackOutlook::Kind;
    if (entry.result != JournalEntry::Result::trashed || !entry.trashPath || !entry.trashedIdentity)
        return {.kind = Kind::refused, .reason = "Nothing to put back"};
    if (policy_.isOutOfReach(*entry.trashPath))
        return {.kind = Kind::refused, .reason = std::string(SafetyPolicy::onAnotherVolume)};
    const auto stamp = FileStamp::of(*entry.trashPath);
    if (!stamp)
        return {.kind = Kind::gone, .reason = "No longer in the Trash (emptied or moved)"};
    if (!entry.trashedIdentity->isOf(*stamp, *entry.trashPath))
        return {.kind = Kind::gone, .reason = TrashedObject::isAnother};
    if (!isInTrashFolder(*entry.trashPath, paths))
        return {.kind = Kind::gone, .reason = "Not in a Trash folder"};
    return {};
}

std::expected<Destination, PutBackOutlook> PutBack::destinationOf(const JournalEntry& entry) const {
    using Kind = PutBackOutlook::Kind;
    const auto refused = [](Kind kind, std::string reason) {
        return std::unexpected(PutBackOutlook{.kind = kind, .reason = std::move(reason)});
    };
    auto paths = policy_.resolver();
    if (auto inTrash = outlookInTrash(entry, paths); inTrash.reason)
        return std::unexpected(std::move(inTrash));
    // A volume whose server may never answer was mounted over its folder since.
    if (policy_.isOutOfReach(entry.originalPath))
        return refused(Kind::refused, folderGone);
    // A link that leads nowhere is something too.
    if (platform::fileStatus(entry.originalPath))
        return refused(Kind::occupied, occupied);
    const auto folder = policy_.canonical(std::string(parentPath(entry.originalPath)), paths);
    if (!folder || folder != entry.originalParentRealPath)
        return refused(Kind::refused, folderGone);
    auto destination = Destination::open(entry);
    if (!destination)
        return refused(Kind::refused, folderGone);
    if (destination->isTaken())
        return refused(Kind::occupied, occupied);
    if (auto reason = policy_.restoreDestinationReason(entry.originalPath,
                                                       rootForDestination(entry.originalPath, paths), paths))
        return refused(Kind::refused, *std::move(reason));
    // What the policy was asked about by its path must be what is held.
    if (!destination->isAtItsPath())
        return refused(Kind::refused, folderGone);
    return *std::move(destination);
}

AllowedRoot PutBack::rootForDestination(const std::string& path) const {
    auto paths = policy_.resolver();
    return rootForDestination(path, paths);
}

AllowedRoot PutBack::rootForDestination(const std::string& path, PathResolver& paths) const {
    const auto place = joinedPath(canonicalOrAsWritten(parentPath(path), paths), lastPathComponent(path));
    if (policy_.isApplicationPlace(place))
        return AllowedRoot::applicationBundle;
    return policy_.isLeftoverPlace(place) ? AllowedRoot::leftover : AllowedRoot::homeItem;
}

bool PutBack::isInTrashFolder(const std::string& path, PathResolver& paths) const {
    const auto item = joinedPath(canonicalOrAsWritten(parentPath(path), paths), lastPathComponent(path));
    return std::ranges::any_of(trashFolders_, [&](const std::string& trashFolder) {
        const auto folder = canonicalOrAsWritten(trashFolder, paths);
        return item != folder && RealPath::isInside(item, folder);
    });
}

std::string PutBack::canonicalOrAsWritten(std::string_view path, PathResolver& paths) const {
    const std::string asWritten(path);
    return policy_.canonical(asWritten, paths).value_or(asWritten);
}

} // namespace orbel
