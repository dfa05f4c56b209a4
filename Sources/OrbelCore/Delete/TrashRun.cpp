#include "Delete/TrashRun.h"

#include "Delete/TakenAlong.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <deque>
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

} // namespace

DeletionReport TrashRun::over(std::span<const DeletionItem> items) {
    const auto isTakenAlong = takenAlong(items);
    std::deque<Waiting> waiting;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (!isTakenAlong[i])
            waiting.push_back({.index = i});
    while (!waiting.empty() && !isCancelled()) {
        std::vector<Move> group;
        for (; !waiting.empty() && group.size() < MoveRecord::mostMoves; waiting.pop_front())
            group.push_back({.waiting = waiting.front(), .item = items[waiting.front().index]});
        if (handleGroup(group) == Next::stop)
            break;
        waiting.insert(waiting.begin(), again_.begin(), again_.end());
        again_.clear();
    }
    report_.uncheckedProcesses = checks_.uncheckedProcesses();
    report_.finishedAt = now();
    return std::move(report_);
}

TrashRun::Next TrashRun::handleGroup(std::vector<Move>& group) {
    journalFailure_.reset();
    if (kind_ == Kind::move)
        if (auto prepared = prepare(group); !prepared)
            journalFailure_ = std::move(prepared.error());
    recordedAt_ = std::chrono::steady_clock::now();
    auto next = Next::goOn;
    for (auto& move : group) {
        next = isCancelled() ? Next::stop : handle(move);
        if (next == Next::goOn
            && std::chrono::steady_clock::now() - recordedAt_ > MoveRecord::longestUnrecorded)
            next = record();
        if (next == Next::stop)
            break;
    }
    if (record() == Next::stop)
        next = Next::stop;
    for (auto& move : group)
        drop(move);
    record_.end();
    return next;
}

/// Nothing is told of an item here: why it cannot move is told when its turn comes.
std::expected<void, JournalError> TrashRun::prepare(std::vector<Move>& group) {
    folderPath_.clear();
    std::size_t count = 0;
    for (auto& move : group)
        if (auto held = checks_.hold(move.item)) {
            move.held = std::move(held);
            ++count;
        }
    if (count == 0)
        return {};
    if (auto begun = record_.begin(count); !begun)
        return begun;
    for (auto& move : group)
        if (move.held)
            if (auto prepared = prepare(move, *move.held); !prepared)
                return prepared;
    return record_.seal();
}

std::expected<void, JournalError> TrashRun::prepare(Move& move, const HeldItem& held) {
    // Most items of a group come from few folders, one after another.
    if (const auto folder = parentPath(held.realPath); folder != folderPath_) {
        folderPath_ = folder;
        folder_ = TrashedIdentity::of(folderPath_);
    }
    move.known = {.item = platform::persistentIdentity(held.realPath, held.stamp.identity.inode),
                  .folder = folder_};
    std::expected<void, JournalError> intended;
    const auto aboutToMove = [&](const PlannedMove& plan) -> std::expected<void, std::string> {
        auto line = trashedEntry(move, held, plan.trashPath);
        // What the move will be measured to free is not known yet.
        line.bytes = move.item.estimatedBytes;
        line.note = move.item.note;
        MoveIntent intent{.kind = MoveIntent::Kind::toTrash,
                          .entry = std::move(line),
                          .sourcePath = held.realPath,
                          .destinationPath = plan.trashPath,
                          .stamp = held.stamp,
                          .persistent = move.known.item};
        if (plan.infoPath)
            intent.infoFile = {.path = *plan.infoPath, .content = plan.infoContent};
        move.infoPath = plan.infoPath;
        intended = record_.intend(intent);
        if (!intended)
            return std::unexpected(intended.error().words);
        return {};
    };
    move.prepared = trasher_.trash->prepare(held.realPath, aboutToMove, record_.barrier());
    return intended;
}

TrashRun::Next TrashRun::handle(Move& move) {
    tell(move, Step::begun);
    const auto approved = checks_.approve(move.item);
    if (!approved)
        return skip(move, approved.error());
    if (kind_ == Kind::move)
        return make(move, *approved);
    report_.moved.push_back(
        {.title = move.item.title, .path = move.item.path, .bytes = approved->bytes, .note = approved->note});
    tell(move, Step::moved);
    return Next::goOn;
}

TrashRun::Next TrashRun::make(Move& move, const ApprovedItem& approved) {
    if (journalFailure_) {
        skip(move, journalUnwritable);
        return stopForJournal(journalFailure_->words);
    }
    // What stood against it is gone: it was busy for a moment, or too many files were open.
    if (!move.held && tryAgain(move))
        return Next::goOn;
    if (!move.held || move.held->realPath != approved.realPath)
        return skip(move, changed);
    if (!move.prepared)
        return skip(move, "Could not move to the Trash: " + move.prepared.error());
    const auto trashed = (*move.prepared)->make(record_.barrier());
    if (trashed) {
        move.isMade = true;
        return confirm(move, approved, *trashed);
    }
    if (trashed.error().isPlanVoid && tryAgain(move))
        return Next::goOn;
    return skip(move, "Could not move to the Trash: " + trashed.error().words);
}

TrashRun::Next TrashRun::confirm(Move& move, const ApprovedItem& approved, const std::string& trashPath) {
    const bool isUnchanged = approved.isAt(trashPath);
    // An item that was changed in the last moment is in the Trash and has to be found there.
    if (!isUnchanged && !approved.isObjectAt(trashPath))
        return stopForMismatch(move, trashPath);
    const auto& item = move.item;
    unrecorded_.push_back(
        {.move = move,
         .moved = {.title = item.title, .path = item.path, .bytes = approved.bytes, .note = approved.note}});
    // Asked again where it could not be told before: what outlives a remount is worth the call.
    if (!move.known.item)
        move.known.item = platform::persistentIdentity(trashPath, approved.stamp.identity.inode);
    auto line = trashedEntry(move, approved, trashPath);
    line.bytes = approved.bytes;
    line.note = approved.note;
    if (!isUnchanged) {
        line.trashedIdentity = TrashedIdentity::of(trashPath);
        reportSkipped(item, mismatch);
        report_.stoppedForMismatch = true;
    }
    addLine(std::move(line));
    mustBeRecorded_ = true;
    return isUnchanged ? Next::goOn : Next::stop;
}

TrashRun::Next TrashRun::stopForMismatch(const Move& move, const std::string& trashPath) {
    auto line = entry(move, JournalEntry::Result::skipped);
    line.reason = mismatch;
    line.trashPath = trashPath;
    line.trashedIdentity = TrashedIdentity::of(trashPath);
    reportSkipped(move.item, mismatch);
    tell(move, Step::skipped);
    // With its line written there is nothing to settle: where the approved object went cannot be found
    // out later either.
    addLine(std::move(line));
    mustBeRecorded_ = true;
    report_.stoppedForMismatch = true;
    return Next::stop;
}

/// Removes what was made in the Trash for a move that was not made.
void TrashRun::drop(Move& move) {
    move.prepared = nullptr;
    // Settling removes what could not be removed now.
    if (!move.isMade && move.infoPath && platform::fileStatus(*move.infoPath))
        record_.keepIntents();
}

bool TrashRun::tryAgain(const Move& move) {
    constexpr int mostTries = 20;
    const int tries = move.waiting.tries + 1;
    if (tries < mostTries)
        again_.push_back({.index = move.waiting.index, .tries = tries, .lineID = move.waiting.lineID});
    return tries < mostTries;
}

/// Appends the lines that wait. Whether that is possible matters only to what was moved; of any other item
/// nothing has changed on the disk.
TrashRun::Next TrashRun::record() {
    recordedAt_ = std::chrono::steady_clock::now();
    if (lines_.empty())
        return Next::goOn;
    auto recorded = record_.record(std::exchange(lines_, {}));
    if (std::exchange(mustBeRecorded_, false) && !recorded)
        record_.keepIntents();
    const auto made = std::exchange(unrecorded_, {});
    for (const auto& [move, moved] : made) {
        report_.moved.push_back(moved);
        tell(move, Step::moved);
    }
    if (recorded || made.empty())
        return Next::goOn;
    for (const auto& [move, moved] : made)
        reportSkipped(move.item, unjournalledMove(trasher_.policy.conventions().fileManager));
    return stopForJournal(std::move(recorded.error().words));
}

JournalEntry TrashRun::entry(const Move& move, JournalEntry::Result result) const {
    return {.id = move.waiting.lineID,
            .sessionID = report_.sessionID,
            .time = now(),
            .module = move.item.module,
            .title = move.item.title,
            .originalPath = move.item.path,
            .root = move.item.root,
            .result = result};
}

JournalEntry TrashRun::trashedEntry(const Move& move, const HeldItem& held,
                                    const std::string& trashPath) const {
    auto line = entry(move, JournalEntry::Result::trashed);
    line.originalParentRealPath = parentPath(held.realPath);
    line.originalParentIdentity = move.known.folder;
    line.approvedRealPath = held.realPath;
    line.trashPath = trashPath;
    line.trashedIdentity = TrashedIdentity::of(held.stamp, move.known.item);
    return line;
}

void TrashRun::reportSkipped(const DeletionItem& item, std::string reason) {
    report_.skipped.push_back({.title = item.title, .path = item.path, .reason = std::move(reason)});
}

void TrashRun::addLine(JournalEntry line) {
    // A home that is not the user's own gets no journal either: its owner could not write to it any more.
    if (kind_ == Kind::rehearsal || trasher_.policy.homeReason())
        return;
    // A path that is no text is refused for that, and written down as far as it can be read.
    line.title = lossyUtf8(line.title);
    line.originalPath = lossyUtf8(line.originalPath);
    lines_.push_back(std::move(line));
}

TrashRun::Next TrashRun::skip(const Move& move, const std::string& reason) {
    auto line = entry(move, JournalEntry::Result::skipped);
    line.reason = reason;
    reportSkipped(move.item, reason);
    addLine(std::move(line));
    tell(move, Step::skipped);
    return Next::goOn;
}

TrashRun::Next TrashRun::stopForJournal(std::string why) {
    report_.journalFailed = true;
    report_.journalFailure = std::move(why);
    return Next::stop;
}

} // namespace orbel
