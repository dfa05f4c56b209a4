#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace orbel {

/// Fills `bytes` from `offset` of an open file on and returns how many there were: fewer only at its end.
/// Absent when a read fails.
std::optional<std::size_t> readAt(int descriptor, std::span<char> bytes, std::uint64_t offset);

} // namespace orbel
