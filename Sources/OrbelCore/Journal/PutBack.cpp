#include "Journal/PutBack.h"

#include "Journal/IntentLog.h"
#include "Platform/HeldObject.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/Utf8.h"
#include "Util/Uuid.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace orbel {

namespace {

constexpr auto differentFile = "The item in the Trash is a different file";
constexpr auto journalUnwritable = "Could not write the journal, so nothing was put back";

/// The object that lies in the Trash, held so that it cannot be mistaken for another one.
struct TrashedObject {
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
};

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

} // namespace

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
                                                   const IsCancelled& isCancelled, Extent extent) const {
    IntentLog intents(journal_->path());
    bool isEveryOutcomeKnown = true;
    std::vector<PutBackResult> results;
    for (const auto& entry : journal_->restorable() | std::views::reverse) {
        if (entry.sessionID != sessionID)
            continue;
        if (isCancelled && isCancelled())
            break;
        if (extent == Extent::possibleNow && reasonNotToRestore(entry))
            continue;
        results.push_back(putBack(entry, intents, isEveryOutcomeKnown));
    }
    if (isEveryOutcomeKnown)
        intents.close();
    return results;
}

/// A line that was missing may stand after those of a newer session, so the times decide; of equal ones, the
/// later line.
std::optional<std::string> PutBack::newestSession(Extent extent) const {
    auto restorable = journal_->restorable();
    std::ranges::reverse(restorable);
    std::ranges::stable_sort(restorable, std::ranges::greater(), &JournalEntry::time);
    const auto newest = std::ranges::find_if(restorable, [&](const JournalEntry& entry) {
        return extent == Extent::notYetBack || !reasonNotToRestore(entry);
    });
    return newest == restorable.end() ? std::nullopt : std::optional(newest->sessionID);
}

PutBackResult PutBack::putBack(const JournalEntry& entry) const {
    IntentLog intents(journal_->path());
    bool isEveryOutcomeKnown = true;
    auto result = putBack(entry, intents, isEveryOutcomeKnown);
    if (isEveryOutcomeKnown)
        intents.close();
    return result;
}

PutBackResult PutBack::putBack(const JournalEntry& entry, IntentLog& intents,
                               bool& isEveryOutcomeKnown) const {
    auto line = newLine(entry);
    if (auto reason = reasonNotToRestore(entry))
        return fail(std::move(line), *std::move(reason));
    const auto trashPath = entry.trashPath.value_or("");
    const auto object = TrashedObject::hold(trashPath, entry.trashedIdentity.value_or(TrashedIdentity()));
    if (!object)
        return fail(std::move(line), differentFile);

    PutBackResult result{.title = entry.title, .path = entry.originalPath};
    line.result = JournalEntry::Result::restored;
    const bool isRecordable = journal_->preflight().has_value()
                              && intents.begin({.kind = MoveIntent::Kind::putBack,
                                                .entry = line,
                                                .sourcePath = trashPath,
                                                .destinationPath = entry.originalPath,
                                                .stamp = object->stamp,
                                                .persistent = object->persistent,
                                                .infoFile = noteOf(trashPath)});
    if (!isRecordable) {
        result.reason = journalUnwritable;
        return result;
    }
    // Writing waits for the disk, long enough for something else to take the item's place.
    if (!object->isAt(trashPath))
        return fail(std::move(line), differentFile);
    if (const auto moved = restore_->move(trashPath, entry.originalPath); !moved)
        return fail(std::move(line), "Could not put it back: " + moved.error());
    if (!object->isAt(entry.originalPath)) {
        isEveryOutcomeKnown = false;
        return fail(std::move(line),
                    "What was put back did not match the item in the Trash — check its folder");
    }

    line.time = std::chrono::floor<std::chrono::microseconds>(now_());
    result.restored = true;
    if (!journal_->append(line)) {
        isEveryOutcomeKnown = false;
        result.reason = "Put back, but the journal could not be written";
    }
    return result;
}

std::optional<std::string> PutBack::reasonNotToRestore(const JournalEntry& entry) const {
    return outlook(entry).reason;
}

PutBackOutlook PutBack::outlook(const JournalEntry& entry) const {
    using Kind = PutBackOutlook::Kind;
    if (entry.result != JournalEntry::Result::trashed || !entry.trashPath || !entry.trashedIdentity)
        return {.kind = Kind::refused, .reason = "Nothing to put back"};
    const auto identity = TrashedIdentity::of(*entry.trashPath);
    if (!identity)
        return {.kind = Kind::gone, .reason = "No longer in the Trash (emptied or moved)"};
    if (!isSameObject(*entry.trashedIdentity, *identity))
        return {.kind = Kind::gone, .reason = differentFile};
    if (!isInTrashFolder(*entry.trashPath))
        return {.kind = Kind::gone, .reason = "Not in a Trash folder"};
    // A link that leads nowhere is something too.
    if (platform::fileStatus(entry.originalPath))
        return {.kind = Kind::occupied, .reason = "Something already exists at the original location"};
    const auto folder = policy_.canonicalizer().canonical(std::string(parentPath(entry.originalPath)));
    if (!folder || folder != entry.originalParentRealPath)
        return {.kind = Kind::refused, .reason = "The original folder no longer exists or moved"};
    if (auto reason =
            policy_.restoreDestinationReason(entry.originalPath, rootForDestination(entry.originalPath)))
        return {.kind = Kind::refused, .reason = std::move(reason)};
    return {};
}

AllowedRoot PutBack::rootForDestination(const std::string& path) const {
    const auto place = joinedPath(canonicalOrAsWritten(parentPath(path)), lastPathComponent(path));
    if (policy_.isApplicationPlace(place))
        return AllowedRoot::applicationBundle;
    return policy_.isLeftoverPlace(place) ? AllowedRoot::leftover : AllowedRoot::homeItem;
}

/// Whether it can be written does not matter: nothing of the item has changed on the disk.
PutBackResult PutBack::fail(JournalEntry line, std::string reason) const {
    PutBackResult result{.title = line.title, .path = line.originalPath, .reason = reason};
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
    return policy_.canonicalizer().canonical(asWritten).value_or(asWritten);
}

} // namespace orbel
