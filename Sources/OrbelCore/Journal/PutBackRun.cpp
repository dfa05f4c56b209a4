#include "Journal/PutBackRun.h"

#include "Journal/TrashNote.h"
#include "Platform/Parallel.h"
#include "Util/Uuid.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace orbel {

namespace {

constexpr auto journalUnwritable = "Could not write the journal, so nothing was put back";
constexpr auto unjournalledReturn = "Put back, but the journal could not be written";
constexpr auto mismatch = "What was put back did not match the item in the Trash — check its folder";

PutBackResult resultFor(const JournalEntry& entry) {
    return {.title = entry.title, .path = entry.originalPath};
}

} // namespace

std::vector<PutBackResult> PutBack::Run::over(std::span<const JournalEntry> entries) {
    while (!entries.empty() && !isCancelled()) {
        const auto count = std::min(entries.size(), MoveRecord::mostMoves);
        handleGroup(entries.first(count));
        entries = entries.subspan(count);
    }
    return std::move(results_);
}

bool PutBack::Run::isCancelled() {
    wasCancelled_ = wasCancelled_ || (isCancelled_ && isCancelled_());
    return wasCancelled_;
}

void PutBack::Run::handleGroup(std::span<const JournalEntry> entries) {
    std::vector<Return> group;
    group.reserve(entries.size());
    for (const auto& entry : entries)
        group.push_back({.entry = entry, .line = newLine(entry)});
    journalFailure_.reset();
    if (auto prepared = prepare(group); !prepared)
        journalFailure_ = std::move(prepared.error());
    recordedAt_ = std::chrono::steady_clock::now();
    for (auto& item : group) {
        if (isCancelled())
            break;
        results_.push_back(handle(item));
        if (std::chrono::steady_clock::now() - recordedAt_ > MoveRecord::longestUnrecorded)
            record();
    }
    record();
    record_.end();
}

/// Nothing is told of an item here: why it cannot go back is told when its turn comes.
std::expected<void, JournalError> PutBack::Run::prepare(std::vector<Return>& group) {
    std::size_t count = 0;
    for (auto& item : group) {
        if (putBack_.outlookInTrash(item.entry).reason)
            continue;
        item.object = TrashedObject::hold(item.entry);
        count += item.object ? 1 : 0;
    }
    if (count == 0)
        return {};
    if (auto begun = record_.begin(count); !begun)
        return begun;
    for (auto& item : group) {
        if (!item.object)
            continue;
        const MoveIntent intent{.kind = MoveIntent::Kind::putBack,
                                .entry = item.line,
                                .sourcePath = item.object->path,
                                .destinationPath = Destination::pathFor(item.entry),
                                .stamp = item.object->stamp,
                                .persistent = item.object->persistent,
                                .infoFile = TrashNote::of(item.object->path)};
        if (auto intended = record_.intend(intent); !intended)
            return intended;
    }
    return record_.seal();
}

PutBackResult PutBack::Run::handle(Return& item) {
    const auto destination = putBack_.destinationOf(item.entry);
    if (!destination)
        return refuse(item, destination.error());
    if (!item.object || !item.object->isInPlace())
        return refuseAsGone(item);
    if (!journalFailure_)
        return moveBack(item, *item.object, *destination);
    auto result = fail(item, journalUnwritable);
    result.journalFailure = journalFailure_->words;
    return result;
}

PutBackResult PutBack::Run::moveBack(Return& item, const TrashedObject& object,
                                     const Destination& destination) {
    const auto moved =
        putBack_.restore_->move(object.path, destination.folder, destination.name, record_.barrier());
    if (!moved && !object.isInPlace())
        return refuseAsGone(item);
    if (!moved)
        return fail(item, "Could not put it back: " + moved.error());
    auto result = resultFor(item.entry);
    auto found = destination.folder.identityOf(destination.name);
    if (!found) // which says nothing of the item
        found = destination.folder.identityOf(destination.name);
    if (found != object.stamp.identity) {
        record_.keepIntents();
        if (found)
            return fail(item, mismatch);
        // What cannot be looked at now is looked for at the next start, which then writes the line.
        result.reason = mismatch;
        return result;
    }
    result.restored = true;
    if (!destination.isAtItsPath())
        result.reason = "Put back into its folder, which was moved meanwhile";
    item.line.time = now();
    lines_.push_back(item.line);
    unrecorded_.push_back({.result = results_.size(), .trashPath = object.path});
    return result;
}

/// What is gone stays gone: a line for each attempt at it would only fill the journal.
PutBackResult PutBack::Run::refuse(Return& item, const PutBackOutlook& outlook) {
    if (outlook.kind != PutBackOutlook::Kind::gone)
        return fail(item, outlook.reason.value_or(""));
    auto result = resultFor(item.entry);
    result.reason = outlook.reason;
    return result;
}

/// Another program may take an item from the Trash at any moment, and may even put it back itself.
PutBackResult PutBack::Run::refuseAsGone(Return& item) {
    return refuse(item,
                  {.kind = PutBackOutlook::Kind::gone,
                   .reason = putBack_.outlookInTrash(item.entry).reason.value_or(TrashedObject::isAnother)});
}

PutBackResult PutBack::Run::fail(Return& item, std::string reason) {
    auto result = resultFor(item.entry);
    result.reason = reason;
    item.line.result = JournalEntry::Result::restoreFailed;
    item.line.reason = std::move(reason);
    // A home that is not the user's own gets no journal either: its owner could not write to it any more.
    if (!putBack_.policy_.homeReason())
        lines_.push_back(item.line);
    return result;
}

/// Appends the lines that wait. Whether that is possible matters only to what is back; of any other item
/// nothing has changed on the disk.
void PutBack::Run::record() {
    recordedAt_ = std::chrono::steady_clock::now();
    if (lines_.empty())
        return;
    const auto recorded = record_.record(std::exchange(lines_, {}));
    const auto made = std::exchange(unrecorded_, {});
    if (!recorded && !made.empty()) {
        journalFailure_ = recorded.error();
        record_.keepIntents();
    }
    for (const auto& [place, trashPath] : made)
        if (!recorded) {
            results_[place].reason = unjournalledReturn;
            results_[place].journalFailure = recorded.error().words;
        }
    if (recorded)
        removeNotes(made);
}

/// The notes go last: without its own, an item that a power cut leaves in the Trash would have no origin.
void PutBack::Run::removeNotes(std::span<const Unrecorded> made) {
    // Some disks are told at once of each block that is free again, and are waited for.
    constexpr std::size_t notesPerThread = 16;
    std::atomic<bool> isOneLeft = false;
    forEachTask(made.size(), 1 + made.size() / notesPerThread, [&](std::size_t i) {
        if (!TrashNote(made[i].trashPath).removeIfUnused())
            isOneLeft = true;
    });
    if (isOneLeft)
        record_.keepIntents();
}

JournalEntry PutBack::Run::newLine(const JournalEntry& entry) const {
    return {.id = newUuid(),
            .sessionID = entry.sessionID,
            .time = now(),
            .module = entry.module,
            .title = entry.title,
            .originalPath = entry.originalPath,
            .originalParentRealPath = entry.originalParentRealPath,
            .originalParentIdentity = entry.originalParentIdentity,
            .root = entry.root,
            .bytes = entry.bytes,
            .trashPath = entry.trashPath,
            .result = JournalEntry::Result::restored,
            .refersTo = entry.id};
}

} // namespace orbel
