#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace orbel::platform {

/// Reads what getattrlist answers to the one question for a volume's used space: the length of the reply (32
/// bits) and a signed 64-bit byte count right behind it. Absent when the reply is shorter than those twelve
/// bytes or the count is not positive, which is how file systems without such a figure answer.
std::optional<std::uint64_t> spaceUsedIn(std::span<const std::byte> reply);

} // namespace orbel::platform
