#include "Alerts/LowDiskAlert.h"

#include "Safety/ByteFormat.h"

namespace orbel {

std::optional<LowDiskAlert::Message> LowDiskAlert::evaluate(std::uint64_t free,
                                                            const LowDiskSettings& settings,
                                                            std::chrono::system_clock::time_point now) {
    if (!settings.enabled || free >= settings.threshold)
        return std::nullopt;
    if (lastFired && now - *lastFired < cooldown)
        return std::nullopt;
    lastFired = now;
    return message(free);
}

LowDiskAlert::Message LowDiskAlert::message(std::uint64_t free) {
    return {.title = "Disk space is low",
            .body = ByteFormat::string(free) + " free. Open Ostrevo Vanto to see where the space went."};
}

} // namespace orbel
