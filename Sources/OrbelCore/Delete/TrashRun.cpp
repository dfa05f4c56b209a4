#include "Delete/TrashRun.h"

#include "Delete/TakenAlong.h"
#include "Journal/MoveGroups.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

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
    for (std::size_t i = 0; i < items.size(); ++i)
        if (!isTakenAlong[i])
            waiting_.push_back({.index = i});
    forEachGroup([&] { return nextGroup(items); }, [this](Group& group) { prepare(group); },
                 [this](Group& group) { return handle(group) == Next::goOn; });
    report_.uncheckedProcesses = checks_.uncheckedProcesses();
    report_.finishedAt = now();
    return std::move(report_);
}

std::unique_ptr<TrashRun::Group> TrashRun::nextGroup(std::span<const DeletionItem> items) {
    waiting_.insert(waiting_.begin(), again_.begin(), again_.end());
    again_.clear();
    if (waiting_.empty() || isCancelled())
        return nullptr;
    auto group = std::make_unique<Group>(*trasher_.journal);
    const auto most = MoveRecord::mostMoves();
    for (; !waiting_.empty() && group->moves.size() < most; waiting_.pop_front())
        group->moves.push_back({.waiting = waiting_.front(), .item = items[waiting_.front().index]});
    group->linesBefore = std::exchange(movesBefore_, group->moves.size());
    return group;
}

TrashRun::Group::~Group() {
    for (auto& move : moves) {
        move.prepared = nullptr;
        // Settling removes what could not be removed now.
        if (!move.isMade && move.infoPath && platform::fileStatus(*move.infoPath))
            record.keepIntents();
    }
}

/// Nothing is told of an item here: why it cannot move is told when its turn comes.
void TrashRun::prepare(Group& group) const {
    if (kind_ == Kind::rehearsal)
        return;
    if (auto prepared = prepareMoves(group); !prepared)
        group.journalFailure = std::move(prepared.error());
}

std::expected<void, JournalError> TrashRun::prepareMoves(Group& group) const {
    hold(group.moves);
    std::vector<Move*> held;
    std::vector<std::string> paths;
    for (auto& move : group.moves)
        if (move.held) {
            held.push_back(&move);
            paths.push_back(move.held->realPath);
        }
    if (held.empty())
        return {};
    auto& record = group.record;
    if (auto begun = record.begin(held.size() + group.linesBefore); !begun)
        return begun;
    const auto plans = trasher_.trash->plan(paths, record.barrier());
    std::vector<MoveIntent> intents;
    intents.reserve(held.size());
    for (std::size_t i = 0; i < held.size(); ++i)
        if (const auto& item = held[i]->held; item && plans[i])
            intents.push_back(intent(*held[i], *item, *plans[i]));
    if (auto intended = record.intend(intents); !intended)
        return intended;
    for (std::size_t i = 0; i < held.size(); ++i)
        prepare(*held[i], plans[i], record.barrier());
    return record.seal();
}

void TrashRun::hold(std::span<Move> moves) const {
    // Most items of a group come from few folders, one after another.
    auto paths = trasher_.policy.resolver();
    platform::KnownVolumes volumes;
    std::string folderPath;
    std::optional<TrashedIdentity> folder;
    for (auto& move : moves) {
        auto held = checks_.hold(move.item, paths);
        if (!held)
            continue;
        if (const auto path = parentPath(held->realPath); path != folderPath) {
            folderPath = path;
            folder = TrashedIdentity::of(folderPath);
        }
        move.known = {.item =
                          platform::persistentIdentity(held->realPath, held->stamp.identity.inode, volumes),
                      .folder = folder};
        move.held = std::move(held);
    }
}

MoveIntent TrashRun::intent(const Move& move, const HeldItem& held, const PlannedMove& plan) const {
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
    return intent;
}

void TrashRun::prepare(Move& move, const std::expected<PlannedMove, std::string>& plan,
                       Barrier& barrier) const {
    if (!plan) {
        move.prepared = std::unexpected(TrashFailure{.words = plan.error()});
        return;
    }
    move.prepared = trasher_.trash->prepare(*plan, barrier);
    // A file of that name that another program made is not this move's.
    if (move.prepared || !move.prepared.error().isPlanVoid)
        move.infoPath = plan->infoPath;
}

TrashRun::Next TrashRun::handle(Group& group) {
    group_ = &group;
    recordedAt_ = std::chrono::steady_clock::now();
    auto next = Next::goOn;
    for (auto& move : group.moves) {
        next = isCancelled() ? Next::stop : handle(move);
        if (next == Next::goOn
            && std::chrono::steady_clock::now() - recordedAt_ > MoveRecord::longestUnrecorded)
            next = record();
        if (next == Next::stop)
            break;
    }
    return record() == Next::stop ? Next::stop : next;
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
    if (group_->journalFailure) {
        skip(move, journalUnwritable);
        return stopForJournal(group_->journalFailure->words);
    }
    // What stood against it is gone: it was busy for a moment, or too many files were open.
    if (!move.held && tryAgain(move))
        return Next::goOn;
    if (!move.held || move.held->realPath != approved.realPath)
        return skip(move, changed);
    const auto trashed = move.prepared ? (*move.prepared)->make(group_->record.barrier())
                                       : std::unexpected(move.prepared.error());
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
    auto recorded = group_->record.record(std::exchange(lines_, {}));
    if (std::exchange(mustBeRecorded_, false) && !recorded)
        group_->record.keepIntents();
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
