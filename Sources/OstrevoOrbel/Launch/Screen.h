#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orbel {

/// The screens in the order of the sidebar; where two screens are compared by position, this order counts.
enum class Screen : std::uint8_t { overview, map, large, duplicates, uninstall, tidy, journal };

/// Their names, in the same order.
inline constexpr std::array<std::string_view, 7> screenNames{"overview",  "map",  "large",  "duplicates",
                                                             "uninstall", "tidy", "journal"};

/// What people read, in the same order.
inline constexpr std::array<std::string_view, 7> screenTitles{
    "Overview", "Map", "Large and Old", "Duplicates", "Uninstall", "Tidy", "Journal"};

/// The screen of that name, spelt exactly as the case; absent for any other text.
std::optional<Screen> screenNamed(std::string_view name);

} // namespace orbel
