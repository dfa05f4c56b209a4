#pragma once

#include "Journal/MoveRecord.h"
#include "Journal/PutBack.h"
#include "Journal/PutBackPlaces.h"
#include "Journal/TrashNote.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orbel {

/// One run over a list of entries, in groups as MoveRecord has them.
class PutBack::Run {
public:
    /// Both must live as long as this; `isCancelled` may be empty.
    Run(const PutBack& putBack, const IsCancelled& isCancelled)
        : putBack_(putBack), isCancelled_(isCancelled) {}

    /// See PutBack::putBackSession.
    std::vector<PutBackResult> over(std::span<const JournalEntry> entries);

private:
    /// One item of the group that is under way.
    struct Return {
        const JournalEntry& entry;
        JournalEntry line;                     ///< of its outcome; shares its id with the intent
        std::optional<TrashedObject> object{}; ///< absent: it is not there
        std::optional<MoveIntent::InfoFile> note{};
        std::optional<TrashNote::Seen> seenNote{};
    };

    struct Group {
        explicit Group(JournalStore& journal) : record(journal) {}
        /// Removes the Trash's notes of what is back. They go last: without its own, an item that a power
        /// cut leaves in the Trash would have no origin.
        ~Group();
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;

        MoveRecord record;
        std::vector<TrashNote::Seen> unneeded; ///< of what is back and has its line
        std::vector<Return> items;
        std::size_t linesBefore = 0; ///< at most so many of the group before may still be appended
        std::optional<JournalError> journalFailure; ///< why nothing of it may move
    };

    /// An item that is back and has no line yet.
    struct Unrecorded {
        std::size_t result; ///< its place among the results
        const Return& item;
    };

    bool isCancelled();
    std::unique_ptr<Group> nextGroup(std::span<const JournalEntry>& entries);
    // On another thread than all others, while another group is handled.
    void prepare(Group& group) const;
    std::expected<void, JournalError> prepareMoves(Group& group) const;

    void handle(Group& group);
    PutBackResult handle(Return& item);
    PutBackResult moveBack(Return& item, const TrashedObject& object, const Destination& destination);
    PutBackResult refuse(Return& item, const PutBackOutlook& outlook);
    PutBackResult refuseAsGone(Return& item);
    PutBackResult fail(Return& item, std::string reason);
    void record();
    JournalEntry newLine(const JournalEntry& entry) const;
    Date now() const { return std::chrono::floor<std::chrono::microseconds>(putBack_.now_()); }

    const PutBack& putBack_;
    const IsCancelled& isCancelled_;
    std::vector<PutBackResult> results_;
    bool wasCancelled_ = false;
    std::size_t movesBefore_ = 0;                ///< in the group that was begun last
    std::optional<JournalError> journalFailure_; ///< why nothing more may move
    // Of the group that is handled.
    Group* group_ = nullptr;
    std::vector<JournalEntry> lines_; ///< waiting to be appended
    std::vector<Unrecorded> unrecorded_;
    std::chrono::steady_clock::time_point recordedAt_;
};

} // namespace orbel
