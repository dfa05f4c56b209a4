#pragma once

#include "Util/Check.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>

namespace orbel {

/// The names of an enumeration's cases, under which they are stored and exported. An enumeration whose cases
/// count up from 0 takes part by specialising this with `static constexpr std::array<std::string_view, count>
/// names`, in the order of its cases.
template <class Enum>
struct RawValues;

/// The name of a case.
template <class Enum>
constexpr std::string_view rawValue(Enum value) {
    const auto index = static_cast<std::size_t>(value);
    ORBEL_CHECK(index < RawValues<Enum>::names.size(), "a case without a name");
    return RawValues<Enum>::names[index];
}

/// The case of exactly that name; absent for any other text.
template <class Enum>
constexpr std::optional<Enum> fromRawValue(std::string_view name) {
    const auto found = std::ranges::find(RawValues<Enum>::names, name);
    if (found == RawValues<Enum>::names.end())
        return std::nullopt;
    return static_cast<Enum>(std::distance(RawValues<Enum>::names.begin(), found));
}

} // namespace orbel
