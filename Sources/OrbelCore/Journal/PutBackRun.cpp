#include "Journal/PutBackRun.h"

#include "Journal/MoveGroups.h"
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
    forEachGroup([&] { return nextGroup(entries); }, [this](Group& group) { prepare(group); },
                 [this](Group& group) {
                     handle(group);
                     return !wasCancelled_;
                 });
    return std::move(results_);
}

bool PutBack::Run::isCancelled() {
    wasCancelled_ = wasCancelled_ || (isCancelled_ && isCancelled_());
    return wasCancelled_;
}

std::unique_ptr<PutBack::Run::Group> PutBack::Run::nextGroup(std::span<const JournalEntry>& entries) {
    if (entries.empty() || isCancelled())
        return nullptr;
    const auto count = std::min(entries.size(), MoveRecord::mostMoves());
    auto group = std::make_unique<Group>(*putBack_.journal_);
    group->items.reserve(count);
    for (const auto& entry : entries.first(count))
        group->items.push_back({.entry = entry, .line = newLine(entry)});
    group->linesBefore = std::exchange(movesBefore_, count);
    entries = entries.subspan(count);
    return group;
}

void PutBack::Run::handle(Group& group) {
    group_ = &group;
    recordedAt_ = std::chrono::steady_clock::now();
    for (auto& item : group.items) {
        if (isCancelled())
            break;
        results_.push_back(handle(item));
        if (std::chrono::steady_clock::now() - recordedAt_ > MoveRecord::longestUnrecorded)
            record();
    }
    record();
}

/// Nothing is told of an item here: why it cannot go back is told when its turn comes.
void PutBack::Run::prepare(Group& group) const {
    if (auto prepared = prepareMoves(group); !prepared)
        group.journalFailure = std::move(prepared.error());
}

std::expected<void, JournalError> PutBack::Run::prepareMoves(Group& group) const {
    auto paths = putBack_.policy_.resolver();
    for (auto& item : group.items)
        if (!putBack_.outlookInTrash(item.entry, paths).reason) {
            item.object = TrashedObject::hold(item.entry);
            if (item.object)
                item.note = TrashNote::of(item.object->path);
        }
    const auto count = static_cast<std::size_t>(
        std::ranges::count_if(group.items, [](const Return& item) { return item.object.has_value(); }));
    if (count == 0)
        return {};
    if (auto begun = group.record.begin(count + group.linesBefore); !begun)
        return begun;
    std::vector<MoveIntent> intents;
    intents.reserve(count);
    for (const auto& item : group.items)
        if (item.object)
            intents.push_back({.kind = MoveIntent::Kind::putBack,
                               .entry = item.line,
                               .sourcePath = item.object->path,
                               .destinationPath = Destination::pathFor(item.entry),
                               .stamp = item.object->stamp,
                               .persistent = item.object->persistent,
                               .infoFile = item.note});
    if (auto intended = group.record.intend(intents); !intended)
        return intended;
    return group.record.seal();
}

PutBackResult PutBack::Run::handle(Return& item) {
    const auto destination = putBack_.destinationOf(item.entry);
    if (!destination)
        return refuse(item, destination.error());
    if (!item.object || !item.object->isInPlace())
        return refuseAsGone(item);
    const auto& failure = journalFailure_ ? journalFailure_ : group_->journalFailure;
    if (!failure)
        return moveBack(item, *item.object, *destination);
    auto result = fail(item, journalUnwritable);
    result.journalFailure = failure->words;
    return result;
}

PutBackResult PutBack::Run::moveBack(Return& item, const TrashedObject& object,
                                     const Destination& destination) {
    const auto moved =
        putBack_.restore_->move(object.path, destination.folder, destination.name, group_->record.barrier());
    if (!moved && !object.isInPlace())
        return refuseAsGone(item);
    if (!moved)
        return fail(item, "Could not put it back: " + moved.error());
    auto result = resultFor(item.entry);
    auto found = destination.folder.identityOf(destination.name);
    if (!found) // which says nothing of the item
        found = destination.folder.identityOf(destination.name);
    if (found != object.stamp.identity) {
        group_->record.keepIntents();
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
    auto paths = putBack_.policy_.resolver();
    return refuse(
        item,
        {.kind = PutBackOutlook::Kind::gone,
         .reason = putBack_.outlookInTrash(item.entry, paths).reason.value_or(TrashedObject::isAnother)});
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
    const auto recorded = group_->record.record(std::exchange(lines_, {}));
    const auto made = std::exchange(unrecorded_, {});
    if (!recorded && !made.empty()) {
        journalFailure_ = recorded.error();
        group_->record.keepIntents();
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
        group_->record.keepIntents();
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
