#include "Journal/PutBack.h"

#include "Journal/HeldFolder.h"
#include "Journal/IntentLog.h"
#include "Journal/Restorable.h"
#include "Platform/HeldObject.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/Utf8.h"
#include "Util/Uuid.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace orbel {

namespace {

constexpr auto differentFile = "The item in the Trash is a different file";
constexpr auto journalUnwritable = "Could not write the journal, so nothing was put back";
constexpr auto unjournalledReturn = "Put back, but the journal could not be written";
constexpr auto folderGone = "The original folder no longer exists or moved";
constexpr auto occupied = "Something already exists at the original location";

/// The Trash's own note of an item in its files/ folder, so that it can be removed later should a crash keep
/// that from being done now; absent where there is none or it is not one of the usual kind.
std::optional<MoveIntent::InfoFile> noteOf(const std::string& trashPath) {
    constexpr std::uint64_t mostBytes = 64 * 1024;
    const auto folder = parentPath(trashPath);
    if (lastPathComponent(folder) != "files")
        return std::nullopt;
    auto path =
        joinedPath(joinedPath(parentPath(folder), "info"), lastPathComponent(trashPath)) + ".trashinfo";
    const auto status = platform::fileStatus(path);
    if (!status || status->type != platform::FileType::regular || status->size > mostBytes)
        return std::nullopt;
    auto content = readFile(path);
    if (!content || !isValidUtf8(*content))
        return std::nullopt;
    return MoveIntent::InfoFile{.path = std::move(path), .content = *std::move(content)};
}

PutBackResult resultFor(const JournalEntry& entry) {
    return {.title = entry.title, .path = entry.originalPath};
}

} // namespace

/// The object that lies in the Trash, held so that it cannot be mistaken for another one.
struct PutBack::TrashedObject {
    platform::HeldObject held;
    FileStamp stamp;
    std::optional<platform::PersistentIdentity> persistent;

    /// Absent when what lies there is not what was moved.
    static std::optional<TrashedObject> hold(const std::string& path, const TrashedIdentity& moved) {
        auto held = platform::HeldObject::hold(path);
        const auto status = held ? held->status() : std::nullopt;
        if (!status)
            return std::nullopt;
        const auto stamp = FileStamp::of(*status);
        auto persistent = platform::persistentIdentity(path, stamp.identity.inode);
        if (!isSameObject(moved, TrashedIdentity::of(stamp, persistent)))
            return std::nullopt;
        return TrashedObject{*std::move(held), stamp, std::move(persistent)};
    }

    bool isAt(const std::string& path) const { return FileIdentity::of(path) == stamp.identity; }
    bool isIn(const HeldFolder& folder, const std::string& name) const {
        return folder.identityOf(name) == stamp.identity;
    }
};

/// Where an item belongs: its old folder, held open, and its name in it.
struct PutBack::Destination {
    HeldFolder folder;
    FileIdentity identity;  ///< of the folder
    std::string folderPath; ///< real
    std::string name;

    /// Absent when another folder, a link or nothing has taken the place of the one that the item came from.
    static std::optional<Destination> open(const JournalEntry& entry) {
        const auto path = entry.originalParentRealPath.value_or("");
        auto folder = HeldFolder::open(path);
        const auto identity = folder ? folder->identity() : std::unexpected(ENOENT);
        if (!identity)
            return std::nullopt;
        Destination opened{.folder = *std::move(folder),
                           .identity = *identity,
                           .folderPath = path,
                           .name = std::string(lastPathComponent(entry.originalPath))};
        const auto& then = entry.originalParentIdentity;
        const auto now = then ? TrashedIdentity::of(path) : std::nullopt;
        if (then && (!now || !isSameObject(*then, *now)))
            return std::nullopt;
        return opened;
    }

    bool isTaken() const { return folder.identityOf(name).has_value(); }
    bool isAtItsPath() const { return FileIdentity::of(folderPath) == identity; }
};

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
    return putBackAll(*found, isCancelled);
}

PutBackSession PutBack::putBackEntryOrSession(const std::string& id, const IsCancelled& isCancelled) const {
    auto found =
        restorable([&](const JournalEntry& entry) { return entry.id == id || entry.sessionID == id; });
    if (!found)
        return {.journalFailure = std::move(found.error().words)};
    if (const auto entry = std::ranges::find(*found, id, &JournalEntry::id); entry != found->end())
        return {.sessionID = entry->sessionID, .results = {putBack(*entry)}};
    std::ranges::reverse(*found);
    return {.sessionID = id, .results = putBackAll(*found, isCancelled)};
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
        last.results = putBackAll(*entries, isCancelled);
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
                   const auto begin = task * entriesAtATime;
                   for (const auto& place :
                        all.subspan(begin, std::min(entriesAtATime, all.size() - begin))) {
                       auto entries = index.entriesAt({&place, 1});
                       if (!entries)
                           return std::unexpected(std::move(entries.error()));
                       for (auto& entry : *entries)
                           if (!outlookInTrash(entry).reason)
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
    return putBackAll({&entry, 1}, nullptr).front();
}

std::vector<PutBackResult> PutBack::putBackAll(std::span<const JournalEntry> entries,
                                               const IsCancelled& isCancelled) const {
    IntentLog intents(journal_->path());
    bool isEveryOutcomeKnown = true;
    std::vector<PutBackResult> results;
    for (const auto& entry : entries) {
        if (isCancelled && isCancelled())
            break;
        results.push_back(putBack(entry, intents, isEveryOutcomeKnown));
    }
    if (isEveryOutcomeKnown)
        intents.close();
    return results;
}

PutBackResult PutBack::putBack(const JournalEntry& entry, IntentLog& intents,
                               bool& isEveryOutcomeKnown) const {
    auto line = newLine(entry);
    const auto destination = destinationOf(entry);
    if (!destination)
        return refuse(std::move(line), destination.error());
    const auto trashPath = entry.trashPath.value_or("");
    const auto object = TrashedObject::hold(trashPath, entry.trashedIdentity.value_or(TrashedIdentity()));
    if (!object)
        return refuseAsGone(entry, std::move(line));

    line.result = JournalEntry::Result::restored;
    if (const auto writable = journal_->preflight(); !writable) {
        auto result = resultFor(entry);
        result.reason = journalUnwritable;
        result.journalFailure = writable.error().words;
        return result;
    }
    const MoveIntent intent{.kind = MoveIntent::Kind::putBack,
                            .entry = line,
                            .sourcePath = trashPath,
                            .destinationPath = joinedPath(destination->folderPath, destination->name),
                            .stamp = object->stamp,
                            .persistent = object->persistent,
                            .infoFile = noteOf(trashPath)};
    if (const auto begun = intents.begin(intent); !begun) {
        auto result = fail(std::move(line), journalUnwritable);
        result.journalFailure = begun.error().words;
        return result;
    }
    auto result = moveBack(entry, std::move(line), *object, *destination, isEveryOutcomeKnown);
    // Settling removes the note of an item that is back.
    if (result.restored && intent.infoFile && platform::fileStatus(intent.infoFile->path))
        isEveryOutcomeKnown = false;
    return result;
}

PutBackResult PutBack::moveBack(const JournalEntry& entry, JournalEntry line, const TrashedObject& object,
                                const Destination& destination, bool& isEveryOutcomeKnown) const {
    const auto trashPath = entry.trashPath.value_or("");
    // Writing the intent waits for the disk, long enough for something else to take the place of either.
    if (!object.isAt(trashPath))
        return refuseAsGone(entry, std::move(line));
    if (!destination.isAtItsPath())
        return fail(std::move(line), folderGone);
    const auto moved = restore_->move(trashPath, destination.folder, destination.name);
    if (!moved && !object.isAt(trashPath))
        return refuseAsGone(entry, std::move(line));
    if (!moved)
        return fail(std::move(line), "Could not put it back: " + moved.error());
    if (!object.isIn(destination.folder, destination.name)) {
        isEveryOutcomeKnown = false;
        return fail(std::move(line),
                    "What was put back did not match the item in the Trash — check its folder");
    }

    auto result = resultFor(entry);
    result.restored = true;
    line.time = std::chrono::floor<std::chrono::microseconds>(now_());
    if (!destination.isAtItsPath())
        result.reason = "Put back into its folder, which was moved meanwhile";
    // A line would outlast a power cut that the move may not. The intent stays, and the next
    // start records it.
    const auto& flushFailure = moved->flushFailure;
    auto recorded =
        flushFailure ? std::unexpected(JournalError{.words = *flushFailure}) : journal_->append(line);
    if (!recorded) {
        isEveryOutcomeKnown = false;
        result.reason = unjournalledReturn;
        result.journalFailure = std::move(recorded.error().words);
    }
    return result;
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
        return {.kind = Kind::gone, .reason = differentFile};
    if (!isInTrashFolder(*entry.trashPath))
        return {.kind = Kind::gone, .reason = "Not in a Trash folder"};
    return {};
}

std::expected<PutBack::Destination, PutBackOutlook> PutBack::destinationOf(const JournalEntry& entry) const {
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

/// What is gone stays gone: a line for each attempt at it would only fill the journal.
PutBackResult PutBack::refuse(JournalEntry line, const PutBackOutlook& outlook) const {
    if (outlook.kind != PutBackOutlook::Kind::gone)
        return fail(std::move(line), outlook.reason.value_or(""));
    auto result = resultFor(line);
    result.reason = outlook.reason;
    return result;
}

/// Another program may take an item from the Trash at any moment, and may even put it back itself.
PutBackResult PutBack::refuseAsGone(const JournalEntry& entry, JournalEntry line) const {
    return refuse(std::move(line), {.kind = PutBackOutlook::Kind::gone,
                                    .reason = outlookInTrash(entry).reason.value_or(differentFile)});
}

/// Whether it can be written does not matter: nothing of the item has changed on the disk.
PutBackResult PutBack::fail(JournalEntry line, std::string reason) const {
    auto result = resultFor(line);
    result.reason = reason;
    line.result = JournalEntry::Result::restoreFailed;
    line.reason = std::move(reason);
    // A home that is not the user's own gets no journal either: its owner could not write to it any more.
    if (!policy_.homeReason())
        static_cast<void>(journal_->append(line));
    return result;
}

JournalEntry PutBack::newLine(const JournalEntry& entry) const {
    return {.id = newUuid(),
            .sessionID = entry.sessionID,
            .time = std::chrono::floor<std::chrono::microseconds>(now_()),
            .module = entry.module,
            .title = entry.title,
            .originalPath = entry.originalPath,
            .originalParentRealPath = entry.originalParentRealPath,
            .originalParentIdentity = entry.originalParentIdentity,
            .root = entry.root,
            .bytes = entry.bytes,
            .trashPath = entry.trashPath,
            .refersTo = entry.id};
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
