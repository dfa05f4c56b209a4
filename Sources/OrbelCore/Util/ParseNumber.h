#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orbel {

/// A whole decimal number: an optional "+" or "-", then digits and nothing else. Absent for any other text
/// and for what does not fit 64 bits.
std::optional<std::int64_t> parseInteger(std::string_view text);

/// A decimal number with a point, independent of the user's locale, and nothing around it. Absent for
/// any other text.
std::optional<double> parseDouble(std::string_view text);

} // namespace orbel
