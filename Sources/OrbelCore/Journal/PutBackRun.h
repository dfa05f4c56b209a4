#pragma once

#include "Journal/MoveRecord.h"
#include "Journal/PutBack.h"
#include "Journal/PutBackPlaces.h"

#include <chrono>
#include <cstddef>
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
        : putBack_(putBack), isCancelled_(isCancelled), record_(*putBack.journal_) {}

    /// See PutBack::putBackSession.
    std::vector<PutBackResult> over(std::span<const JournalEntry> entries);

private:
    /// One item of the group that is under way.
    struct Return {
        const JournalEntry& entry;
        JournalEntry line;                     ///< of its outcome; shares its id with the intent
        std::optional<TrashedObject> object{}; ///< absent: it is not there
    };

    /// An item that is back and has no line yet.
    struct Unrecorded {
        std::size_t result; ///< its place among the results
        std::string trashPath;
    };

    bool isCancelled();
    void handleGroup(std::span<const JournalEntry> entries);
    std::expected<void, JournalError> prepare(std::vector<Return>& group);
    PutBackResult handle(Return& item);
    PutBackResult moveBack(Return& item, const TrashedObject& object, const Destination& destination);
    PutBackResult refuse(Return& item, const PutBackOutlook& outlook);
    PutBackResult refuseAsGone(Return& item);
    PutBackResult fail(Return& item, std::string reason);
    void record();
    void removeNotes(std::span<const Unrecorded> made);
    JournalEntry newLine(const JournalEntry& entry) const;
    Date now() const { return std::chrono::floor<std::chrono::microseconds>(putBack_.now_()); }

    const PutBack& putBack_;
    const IsCancelled& isCancelled_;
    MoveRecord record_;
    std::vector<PutBackResult> results_;
    bool wasCancelled_ = false;
    // Of the group that is under way.
    std::optional<JournalError> journalFailure_; ///< why nothing more of it may move
    std::vector<JournalEntry> lines_;            ///< waiting to be appended
    std::vector<Unrecorded> unrecorded_;
    std::chrono::steady_clock::time_point recordedAt_;
};

} // namespace orbel
