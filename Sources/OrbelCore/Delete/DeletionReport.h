#pragma once

#include "Util/Iso8601.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// What a deletion session did: shown when it ended, and exported. The key of each field in JSON is the
/// field's name.
struct DeletionReport {
    struct Moved {
        std::string title;
        std::string path;
        std::uint64_t bytes = 0; ///< freed, as measured just before the move
        std::optional<std::string> note = std::nullopt;

        bool operator==(const Moved&) const = default;
    };

    struct Skipped {
        std::string title;
        std::string path;
        std::string reason; ///< in the user's words

        bool operator==(const Skipped&) const = default;
    };

    std::string sessionID; ///< that of the session's journal entries
    Date startedAt;
    Date finishedAt;
    std::vector<Moved> moved = {};       ///< in the order they were moved
    std::vector<Skipped> skipped = {};   ///< in the order they were met
    bool cancelled = false;              ///< by the user, before every item had run
    bool stoppedForMismatch = false;     ///< an item in the Trash was not the approved one
    bool journalFailed = false;          ///< stopped because the journal could not be written
    std::int64_t uncheckedProcesses = 0; ///< how many could not be checked for open files
    /// Why the journal could not be written, where it could not; it names the file.
    std::optional<std::string> journalFailure = std::nullopt;

    static constexpr std::string_view trashNote = "Disk space returns when you empty the Trash.";

    /// The sum over `moved`, modulo 2^64.
    std::uint64_t movedBytes() const;

    /// "Moved to Trash: 1.2 GB (measured just now)."
    std::string headline() const;

    bool operator==(const DeletionReport&) const = default;
};

} // namespace orbel
