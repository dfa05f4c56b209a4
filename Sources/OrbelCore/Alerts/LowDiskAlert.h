#pragma once

#include "Alerts/LowDiskSettings.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace orbel {

/// The rule by which the user is told that the disk is nearly full: while it is, once in half an hour. A
/// plain value; what it remembers does not outlive the process.
struct LowDiskAlert {
    static constexpr std::chrono::seconds cooldown{1800};     ///< between two messages
    static constexpr std::chrono::seconds checkInterval{300}; ///< between two checks

    struct Message {
        std::string title;
        std::string body;

        bool operator==(const Message&) const = default;
    };

    std::optional<std::chrono::system_clock::time_point> lastFired; ///< when the last message was due

    /// The message that is due, which starts the cooldown; absent when the alert is off, `free` bytes are not
    /// below the threshold, or the cooldown still runs. Space that was free again in between does not end it.
    std::optional<Message> evaluate(std::uint64_t free, const LowDiskSettings& settings,
                                    std::chrono::system_clock::time_point now);

    /// The message for that many free bytes.
    static Message message(std::uint64_t free);
};

} // namespace orbel
