#include "Platform/macOS/Portable/SpaceUsedReply.h"

#include <algorithm>
#include <cstring>

namespace orbel::platform {

std::optional<std::uint64_t> spaceUsedIn(std::span<const std::byte> reply) {
    std::uint32_t length = 0;
    std::int64_t bytes = 0;
    constexpr auto replyBytes = sizeof length + sizeof bytes; // packed: the count is not aligned to its size
    if (reply.size() < replyBytes)
        return std::nullopt;
    std::memcpy(&length, reply.data(), sizeof length);
    std::memcpy(&bytes, reply.data() + sizeof length, sizeof bytes);
    if (length < replyBytes || bytes <= 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(bytes);
}

} // namespace orbel::platform
