#include "Delete/Trasher.h"

#include "Delete/ItemChecks.h"
#include "Delete/TakenAlong.h"
#include "Journal/IntentLog.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"
#include "Util/Uuid.h"

#include <optional>
#include <string_view>
#include <utility>

namespace orbel {

namespace {

constexpr auto journalUnwritable = "Could not write the journal, so nothing was moved";
constexpr auto changed = "Changed since the scan — scan again";
constexpr auto mismatch = "The moved item did not match the approved item — check the Trash";

std::string unjournalledMove(std::string_view fileManager) {
    return "Moved to the Trash, but the journal could not be written. Put it back from the Trash in "
           + std::string(fileManager) + ".";
}

/// One run over one list of items.
class Run {
public:
    enum class Kind : std::uint8_t { move, rehearsal };

    Run(const Trasher& trasher, Kind kind, const std::string& sessionID)
        : trasher_(trasher),
          kind_(kind),
          checks_(trasher),
          intents_(trasher.journal->path()),
          report_{.sessionID = sessionID, .startedAt = now(), .finishedAt = {}} {}

    DeletionReport over(std::span<const DeletionItem> items, const Trasher::Progress& progress,
                        const Trasher::IsCancelled& isCancelled);

private:
    enum class Next : std::uint8_t { goOn, stop };

    /// What outlives a remount of the item and of the folder that it came from.
    struct Recognition {
        std::optional<platform::PersistentIdentity> item;
        std::optional<TrashedIdentity> folder;
    };

    Date now() const { return std::chrono::floor<std::chrono::microseconds>(trasher_.now()); }

    Next handle(const DeletionItem& item);
    Next move(const DeletionItem& item, const ApprovedItem& approved);
    Next confirm(const DeletionItem& item, const ApprovedItem& approved, Recognition known,
                 const TrashedItem& trashed);
    Next stopForMismatch(const DeletionItem& item, const std::string& trashPath);

    JournalEntry entry(const DeletionItem& item, JournalEntry::Result result) const;
    JournalEntry trashedEntry(const DeletionItem& item, const ApprovedItem& approved,
                              const Recognition& known, const std::string& trashPath) const;
    void reportSkipped(const DeletionItem& item, std::string reason);
    bool journalSkipped(JournalEntry line);
    Next skip(const DeletionItem& item, const std::string& reason);
    Next stopForJournal(std::string why);

    const Trasher& trasher_;
    Kind kind_;
    ItemChecks checks_;
    IntentLog intents_;
    DeletionReport report_;
    /// Of the line that tells what became of the item in progress, whatever that is: its intent names the
    /// same one, so that nobody who settles the intents later takes a known outcome for an unknown one.
    std::string lineID_;
    bool isEveryOutcomeKnown_ = true;
};

DeletionReport Run::over(std::span<const DeletionItem> items, const Trasher::Progress& progress,
                         const Trasher::IsCancelled& isCancelled) {
    const auto isTakenAlong = takenAlong(items);
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (isTakenAlong[i])
            continue;
        if (isCancelled && isCancelled()) {
            report_.cancelled = true;
            break;
        }
        if (progress)
            progress(i, items[i]);
        if (handle(items[i]) == Next::stop)
            break;
    }
    report_.uncheckedProcesses = checks_.uncheckedProcesses();
    if (isEveryOutcomeKnown_)
        intents_.close();
    report_.finishedAt = now();
    return std::move(report_);
}

Run::Next Run::handle(const DeletionItem& item) {
    lineID_ = newUuid();
    const auto approved = checks_.approve(item);
    if (!approved)
        return skip(item, approved.error());
    if (kind_ == Kind::move)
        return move(item, *approved);
    report_.moved.push_back(
        {.title = item.title, .path = item.path, .bytes = approved->bytes, .note = approved->note});
    return Next::goOn;
}

Run::Next Run::move(const DeletionItem& item, const ApprovedItem& approved) {
    if (const auto writable = trasher_.journal->preflight(); !writable) {
        skip(item, journalUnwritable);
        return stopForJournal(writable.error().words);
    }
    Recognition known{.item = platform::persistentIdentity(approved.realPath, approved.stamp.identity.inode),
                      .folder = TrashedIdentity::of(std::string(parentPath(approved.realPath)))};
    std::optional<JournalError> intentFailure;
    std::optional<std::string> infoPath;
    bool isInPlace = true;
    const auto aboutToMove = [&](const PlannedMove& plan) -> std::expected<void, std::string> {
        MoveIntent intent{.kind = MoveIntent::Kind::toTrash,
                          .entry = trashedEntry(item, approved, known, plan.trashPath),
                          .sourcePath = approved.realPath,
                          .destinationPath = plan.trashPath,
                          .stamp = approved.stamp,
                          .persistent = known.item};
        if (plan.infoPath)
            intent.infoFile = {.path = *plan.infoPath, .content = plan.infoContent};
        if (const auto written = intents_.begin(intent); !written) {
            intentFailure = written.error();
            return std::unexpected(intentFailure->words);
        }
        infoPath = plan.infoPath;
        // Writing waits for the disk, long enough for something else to take the item's place; that stays.
        // What slips into the moment that is left, the check after the move finds.
        isInPlace = approved.isInPlace();
        if (!isInPlace)
            return std::unexpected(changed);
        return {};
    };
    const auto trashed = trasher_.trash->moveToTrash(approved.realPath, aboutToMove);
    if (trashed)
        return confirm(item, approved, std::move(known), *trashed);
    if (intentFailure) {
        skip(item, journalUnwritable);
        return stopForJournal(std::move(intentFailure->words));
    }
    // Settling removes a note that was made for the item and could not be removed now.
    if (infoPath && platform::fileStatus(*infoPath))
        isEveryOutcomeKnown_ = false;
    return skip(item, isInPlace ? "Could not move to the Trash: " + trashed.error() : changed);
}

Run::Next Run::confirm(const DeletionItem& item, const ApprovedItem& approved, Recognition known,
                       const TrashedItem& trashed) {
    const bool isUnchanged = approved.isAt(trashed.path);
    // An item that was changed in the last moment is in the Trash and has to be found there.
    if (!isUnchanged && !approved.isObjectAt(trashed.path))
        return stopForMismatch(item, trashed.path);
    report_.moved.push_back(
        {.title = item.title, .path = item.path, .bytes = approved.bytes, .note = approved.note});
    // Asked again where it could not be told before: what outlives a remount is worth the call.
    if (!known.item)
        known.item = platform::persistentIdentity(trashed.path, approved.stamp.identity.inode);
    auto line = trashedEntry(item, approved, known, trashed.path);
    if (!isUnchanged) {
        line.trashedIdentity = TrashedIdentity::of(trashed.path);
        reportSkipped(item, mismatch);
        report_.stoppedForMismatch = true;
    }
    // A line would outlast a power cut that the move may not. The intent stays, and the next
    // start records it.
    auto recorded = trashed.flushFailure ? std::unexpected(JournalError{.words = *trashed.flushFailure})
                                         : trasher_.journal->append(line);
    if (recorded)
        return isUnchanged ? Next::goOn : Next::stop;
    isEveryOutcomeKnown_ = false;
    reportSkipped(item, unjournalledMove(trasher_.policy.conventions().fileManager));
    return stopForJournal(std::move(recorded.error().words));
}

Run::Next Run::stopForMismatch(const DeletionItem& item, const std::string& trashPath) {
    auto line = entry(item, JournalEntry::Result::skipped);
    line.reason = mismatch;
    line.trashPath = trashPath;
    line.trashedIdentity = TrashedIdentity::of(trashPath);
    reportSkipped(item, mismatch);
    // With its line written there is nothing to settle: where the approved object went cannot be found
    // out later either.
    isEveryOutcomeKnown_ = journalSkipped(std::move(line)) && isEveryOutcomeKnown_;
    report_.stoppedForMismatch = true;
    return Next::stop;
}

JournalEntry Run::entry(const DeletionItem& item, JournalEntry::Result result) const {
    return {.id = lineID_,
            .sessionID = report_.sessionID,
            .time = now(),
            .module = item.module,
            .title = item.title,
            .originalPath = item.path,
            .root = item.root,
            .result = result};
}

JournalEntry Run::trashedEntry(const DeletionItem& item, const ApprovedItem& approved,
                               const Recognition& known, const std::string& trashPath) const {
    auto line = entry(item, JournalEntry::Result::trashed);
    line.originalParentRealPath = parentPath(approved.realPath);
    line.originalParentIdentity = known.folder;
    line.approvedRealPath = approved.realPath;
    line.bytes = approved.bytes;
    line.trashPath = trashPath;
    line.trashedIdentity = TrashedIdentity::of(approved.stamp, known.item);
    line.note = approved.note;
    return line;
}

void Run::reportSkipped(const DeletionItem& item, std::string reason) {
    report_.skipped.push_back({.title = item.title, .path = item.path, .reason = std::move(reason)});
}

/// Whether it could be written matters only to what was moved; of any other item nothing has changed on the
/// disk.
bool Run::journalSkipped(JournalEntry line) {
    // A home that is not the user's own gets no journal either: its owner could not write to it any more.
    if (kind_ == Kind::rehearsal || trasher_.policy.homeReason())
        return false;
    // A path that is no text is refused for that, and written down as far as it can be read.
    line.title = lossyUtf8(line.title);
    line.originalPath = lossyUtf8(line.originalPath);
    return trasher_.journal->append(line).has_value();
}

Run::Next Run::skip(const DeletionItem& item, const std::string& reason) {
    auto line = entry(item, JournalEntry::Result::skipped);
    line.reason = reason;
    reportSkipped(item, reason);
    static_cast<void>(journalSkipped(std::move(line)));
    return Next::goOn;
}

Run::Next Run::stopForJournal(std::string why) {
    report_.journalFailed = true;
    report_.journalFailure = std::move(why);
    return Next::stop;
}

} // namespace

Trasher::Trasher(SafetyPolicy safetyPolicy, std::shared_ptr<JournalStore> journalStore,
                 std::shared_ptr<TrashOperations> trashOperations)
    : policy(std::move(safetyPolicy)),
      journal(std::move(journalStore)),
      trash(std::move(trashOperations)),
      measure([](const std::string& path) { return TreeScanner::measure(path); }),
      inUse(orbel::inUse),
      takeMappedSnapshot(orbel::takeMappedSnapshot),
      now(std::chrono::system_clock::now) {}

DeletionReport Trasher::run(std::span<const DeletionItem> items, const std::string& sessionID,
                            const Progress& progress, const IsCancelled& isCancelled) const {
    return Run(*this, Run::Kind::move, sessionID).over(items, progress, isCancelled);
}

DeletionReport Trasher::rehearse(std::span<const DeletionItem> items, const std::string& sessionID,
                                 const Progress& progress, const IsCancelled& isCancelled) const {
    return Run(*this, Run::Kind::rehearsal, sessionID).over(items, progress, isCancelled);
}

} // namespace orbel
