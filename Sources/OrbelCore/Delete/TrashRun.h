#pragma once

#include "Delete/ItemChecks.h"
#include "Delete/Trasher.h"
#include "Journal/MoveRecord.h"
#include "Util/Uuid.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orbel {

/// One run of a Trasher over a list of items, in groups as MoveRecord has them.
class TrashRun {
public:
    enum class Kind : std::uint8_t { move, rehearsal };
    using Step = Trasher::Step;

    TrashRun(const Trasher& trasher, Kind kind, const std::string& sessionID,
             const Trasher::Progress& progress, const Trasher::IsCancelled& isCancelled)
        : trasher_(trasher),
          kind_(kind),
          progress_(progress),
          isCancelled_(isCancelled),
          checks_(trasher),
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
        /// Id shared by the journal line and its intents, so that settling can match them.
        std::string lineID = newUuid();
    };

    /// One item of the group that is under way.
    struct Move {
        Waiting waiting;
        const DeletionItem& item;
        std::optional<HeldItem> held{}; ///< absent: it was not to be prepared
        Recognition known{};
        std::optional<std::string> infoPath{}; ///< of the file in the Trash that stands for it
        std::expected<std::unique_ptr<TrashMove>, TrashFailure> prepared = nullptr;
        bool isMade = false;
    };

    struct Group {
        explicit Group(JournalStore& journal) : record(journal) {}
        /// Removes what was made in the Trash for moves that were not made.
        ~Group();
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;

        MoveRecord record;
        std::vector<Move> moves;
        std::size_t linesBefore = 0; ///< at most so many of the group before may still be appended
        std::optional<JournalError> journalFailure; ///< why nothing of it may move
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
            progress_(move.waiting.index, move.item, step);
    }

    std::unique_ptr<Group> nextGroup(std::span<const DeletionItem> items);
    // On another thread than all others, while another group is handled.
    void prepare(Group& group) const;
    std::expected<void, JournalError> prepareMoves(Group& group) const;
    void hold(std::span<Move> moves) const;
    MoveIntent intent(const Move& move, const HeldItem& held, const PlannedMove& plan) const;
    void prepare(Move& move, const std::expected<PlannedMove, std::string>& plan, Barrier& barrier) const;

    Next handle(Group& group);
    Next handle(Move& move);
    Next make(Move& move, const ApprovedItem& approved);
    Next confirm(Move& move, const ApprovedItem& approved, const std::string& trashPath);
    Next stopForMismatch(const Move& move, const std::string& trashPath);
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
    DeletionReport report_;
    std::deque<Waiting> waiting_; ///< for a group
    std::size_t movesBefore_ = 0; ///< in the group that was begun last
    std::vector<Waiting> again_;  ///< comes with a later group
    // Of the group that is handled.
    Group* group_ = nullptr;
    std::vector<JournalEntry> lines_; ///< waiting to be appended
    std::vector<Unrecorded> unrecorded_;
    std::chrono::steady_clock::time_point recordedAt_;
    bool mustBeRecorded_ = false; ///< some waiting line tells of something in the Trash
};

} // namespace orbel
