#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace orbel {

/// What the user chose about being told that the disk is nearly full. A plain value, kept as JSON.
struct LowDiskSettings {
    static constexpr std::uint64_t defaultThreshold = 10'000'000'000;

    struct Choice {
        std::string_view label;
        std::uint64_t bytes;
    };
    /// The thresholds from which one is chosen.
    static constexpr std::array<Choice, 4> thresholds{{{"5 GB", 5'000'000'000},
                                                       {"10 GB", 10'000'000'000},
                                                       {"20 GB", 20'000'000'000},
                                                       {"50 GB", 50'000'000'000}}};

    bool enabled = false;
    std::uint64_t threshold = defaultThreshold; ///< bytes: less than this is low

    /// What was kept, from its JSON text; the defaults when it cannot be read.
    static LowDiskSettings fromText(std::string_view text);

    bool operator==(const LowDiskSettings&) const = default;
};

void to_json(nlohmann::json& json, const LowDiskSettings& settings);
/// Throws nlohmann::json::exception when a member is missing or of another type.
void from_json(const nlohmann::json& json, LowDiskSettings& settings);

} // namespace orbel
