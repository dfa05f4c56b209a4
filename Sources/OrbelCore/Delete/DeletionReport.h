#pragma once

#include "Util/Iso8601.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// What became of one deletion session.
struct DeletionReport {
    struct Moved {
        std::string title;
        std::string path;
        std::uint64_t bytes = 0;
        std::optional<std::string> note = std::nullopt;

        bool operator==(const Moved&) const = default;
    };

    struct Skipped {
        std::string title;
        std::string path;
        std::string reason;

        bool operator==(const Skipped&) const = default;
    };

    std::string sessionID;
    Date startedAt;
    Date finishedAt;
    std::vector<Moved> moved{};
    std::vector<Skipped> skipped{};
    bool cancelled = false;
    bool stoppedForMismatch = false;
    bool journalFailed = false;
    std::int64_t uncheckedProcesses = 0;

    bool operator==(const DeletionReport&) const = default;
};

} // namespace orbel
