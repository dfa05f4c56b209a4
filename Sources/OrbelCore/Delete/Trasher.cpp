#include "Delete/Trasher.h"

#include "Delete/ItemChecks.h"
#include "Delete/TakenAlong.h"
#include "Journal/MoveRecord.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"
#include "Util/Uuid.h"

#include <deque>
#include <expected>
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
    using Step = Trasher::Step;

    Run(const Trasher& trasher, Kind kind, const std::string& sessionID, const Trasher::Progress& progress,
        const Trasher::IsCancelled& isCancelled)
        : trasher_(trasher),
          kind_(kind),
          progress_(progress),
          isCancelled_(isCancelled),
          checks_(trasher),
          record_(*trasher.journal),
          report_{.sessionID = sessionID, .startedAt = now(), .finishedAt = {}} {}

    DeletionReport over(std::span<const DeletionItem> items);

private:
    enum class Next : std::uint8_t { goOn, stop };

    /// What outlives a remount of the item and of the folder that it came from.
    struct Recognition {
        std::optional<platform::PersistentIdentity> item;
        std::optional<TrashedIdentity> folder;
    };

    struct Waiting {
        std::size_t index;
        int tries = 0; ///< so far
        /// Of the line that tells what became of the item, whatever that is: its intents name the same one,
        /// so that settling them later takes no known outcome for an unknown one.
        std::string lineID = newUuid();
    };

    /// One item of the group that is under way.
    struct Move {
        Waiting place;
        const DeletionItem& item;
        std::optional<HeldItem> held{}; ///< absent: it was not to be prepared
        Recognition known{};
        std::optional<std::string> infoPath{}; ///< of the file in the Trash that stands for it
        std::expected<std::unique_ptr<TrashMove>, std::string> prepared = nullptr;
        bool isMade = false;
    };

    /// A move that was made and has no line yet.
    struct Unrecorded {
        const Move& move;
        DeletionReport::Moved moved;
    };

    Date now() const { return std::chrono::floor<std::chrono::microseconds>(trasher_.now()); }
    bool isCancelled() { return report_.cancelled = isCancelled_ && isCancelled_(); }
    void tell(const Move& move, Step step) const {
        if (progress_)
            progress_(move.place.index, move.item, step);
    }

    Next handleGroup(std::vector<Move>& group);
    std::expected<void, JournalError> prepare(std::vector<Move>& group);
    std::expected<void, JournalError> prepare(Move& move);
    Next handle(Move& move);
    Next make(Move& move, const ApprovedItem& approved);
    Next confirm(Move& move, const ApprovedItem& approved, const std::string& trashPath);
    Next stopForMismatch(const Move& move, const std::string& trashPath);
    void drop(Move& move);
    bool tryAgain(const Move& move);
    Next record();

    JournalEntry entry(const Move& move, JournalEntry::Result result) const;
    JournalEntry trashedEntry(const Move& move, const HeldItem& held, const std::string& trashPath) const;
    void reportSkipped(const DeletionItem& item, std::string reason);
    void addLine(JournalEntry line);
    Next skip(const Move& move, const std::string& reason);
    Next stopForJournal(std::string why);

    const Trasher& trasher_;
    Kind kind_;
    const Trasher::Progress& progress_;
    const Trasher::IsCancelled& isCancelled_;
    ItemChecks checks_;
    MoveRecord record_;
    DeletionReport report_;
    // Of the group that is under way.
    std::optional<JournalError> journalFailure_; ///< why nothing of it may move
    std::vector<Waiting> again_;                 ///< comes with the next one
    std::vector<JournalEntry> lines_;            ///< waiting to be appended
    std::vector<Unrecorded> unrecorded_;
    std::chrono::steady_clock::time_point recordedAt_;
    bool mustBeRecorded_ = false; ///< some waiting line tells of something in the Trash
};

DeletionReport Run::over(std::span<const DeletionItem> items) {
    const auto isTakenAlong = takenAlong(items);
    std::deque<Waiting> waiting;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (!isTakenAlong[i])
            waiting.push_back({.index = i});
    while (!waiting.empty() && !isCancelled()) {
        std::vector<Move> group;
        for (; !waiting.empty() && group.size() < MoveRecord::mostMoves; waiting.pop_front())
            group.push_back({.place = waiting.front(), .item = items[waiting.front().index]});
        if (handleGroup(group) == Next::stop)
            break;
        waiting.insert(waiting.begin(), again_.begin(), again_.end());
        again_.clear();
    }
    report_.uncheckedProcesses = checks_.uncheckedProcesses();
    report_.finishedAt = now();
    return std::move(report_);
}

Run::Next Run::handleGroup(std::vector<Move>& group) {
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
std::expected<void, JournalError> Run::prepare(std::vector<Move>& group) {
    std::size_t count = 0;
    for (auto& move : group)
        if (auto held = checks_.hold(move.item)) {
            move.held = *std::move(held);
            ++count;
        }
    if (count == 0)
        return {};
    if (auto begun = record_.begin(count); !begun)
        return begun;
    for (auto& move : group)
        if (move.held)
            if (auto prepared = prepare(move); !prepared)
                return prepared;
    return record_.seal();
}

std::expected<void, JournalError> Run::prepare(Move& move) {
    const auto& held = *move.held;
    move.known = {.item = platform::persistentIdentity(held.realPath, held.stamp.identity.inode),
                  .folder = TrashedIdentity::of(std::string(parentPath(held.realPath)))};
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

Run::Next Run::handle(Move& move) {
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

Run::Next Run::make(Move& move, const ApprovedItem& approved) {
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

Run::Next Run::confirm(Move& move, const ApprovedItem& approved, const std::string& trashPath) {
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

Run::Next Run::stopForMismatch(const Move& move, const std::string& trashPath) {
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
void Run::drop(Move& move) {
    move.prepared = nullptr;
    // Settling removes what could not be removed now.
    if (!move.isMade && move.infoPath && platform::fileStatus(*move.infoPath))
        record_.keepIntents();
}

bool Run::tryAgain(const Move& move) {
    constexpr int mostTries = 20;
    const int tries = move.place.tries + 1;
    if (tries < mostTries)
        again_.push_back({.index = move.place.index, .tries = tries, .lineID = move.place.lineID});
    return tries < mostTries;
}

/// Appends the lines that wait. Whether that is possible matters only to what was moved; of any other item
/// nothing has changed on the disk.
Run::Next Run::record() {
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

JournalEntry Run::entry(const Move& move, JournalEntry::Result result) const {
    return {.id = move.place.lineID,
            .sessionID = report_.sessionID,
            .time = now(),
            .module = move.item.module,
            .title = move.item.title,
            .originalPath = move.item.path,
            .root = move.item.root,
            .result = result};
}

JournalEntry Run::trashedEntry(const Move& move, const HeldItem& held, const std::string& trashPath) const {
    auto line = entry(move, JournalEntry::Result::trashed);
    line.originalParentRealPath = parentPath(held.realPath);
    line.originalParentIdentity = move.known.folder;
    line.approvedRealPath = held.realPath;
    line.trashPath = trashPath;
    line.trashedIdentity = TrashedIdentity::of(held.stamp, move.known.item);
    return line;
}

void Run::reportSkipped(const DeletionItem& item, std::string reason) {
    report_.skipped.push_back({.title = item.title, .path = item.path, .reason = std::move(reason)});
}

void Run::addLine(JournalEntry line) {
    // A home that is not the user's own gets no journal either: its owner could not write to it any more.
    if (kind_ == Kind::rehearsal || trasher_.policy.homeReason())
        return;
    // A path that is no text is refused for that, and written down as far as it can be read.
    line.title = lossyUtf8(line.title);
    line.originalPath = lossyUtf8(line.originalPath);
    lines_.push_back(std::move(line));
}

Run::Next Run::skip(const Move& move, const std::string& reason) {
    auto line = entry(move, JournalEntry::Result::skipped);
    line.reason = reason;
    reportSkipped(move.item, reason);
    addLine(std::move(line));
    tell(move, Step::skipped);
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
    return Run(*this, Run::Kind::move, sessionID, progress, isCancelled).over(items);
}

DeletionReport Trasher::rehearse(std::span<const DeletionItem> items, const std::string& sessionID,
                                 const Progress& progress, const IsCancelled& isCancelled) const {
    return Run(*this, Run::Kind::rehearsal, sessionID, progress, isCancelled).over(items);
}

} // namespace orbel
