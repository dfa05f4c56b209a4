#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace orbel {

/// The one of `known` that takes the fewest letters to be added, dropped or changed to become `word`, the
/// first of several; absent when all are too different to be meant.
std::optional<std::string_view> nearestWord(std::string_view word, std::span<const std::string_view> known);

} // namespace orbel
