#include "Saved/FrameFile.h"

#include "Saved/ByteStream.h"

#include <cstdint>
#include <limits>

namespace orbel {

namespace {

constexpr std::string_view magic("\x89OrbelScan\r\n\x1A\n", 14);
constexpr std::uint32_t version = 1;
constexpr std::size_t numberSize = 4;
/// Magic, version, and the sizes of the list of parts, compressed and not.
constexpr std::size_t headSize = magic.size() + 3 * numberSize;

std::string fixedNumber(std::size_t value) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xFFU);
    return bytes;
}

std::uint32_t fixedNumberIn(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = numberSize; i-- > 0;)
        value = value << 8U | static_cast<unsigned char>(bytes[i]);
    return value;
}

std::unexpected<std::string> failure(std::string_view words) {
    return std::unexpected(std::string(words));
}

} // namespace

std::string FrameFile::bytesOf(std::span<const Packed> parts) {
    ByteWriter list;
    std::size_t size = 0;
    for (const auto& part : parts) {
        list.number(part.frame.size());
        list.number(part.size);
        size += part.frame.size();
    }
    const auto packedList = packed(list.bytes());
    std::string bytes;
    bytes.reserve(headSize + packedList.frame.size() + size);
    bytes += magic;
    for (const std::size_t number : {std::size_t{version}, packedList.frame.size(), packedList.size})
        bytes += fixedNumber(number);
    bytes += packedList.frame;
    for (const auto& part : parts)
        bytes += part.frame;
    return bytes;
}

bool FrameFile::isBegunBy(std::string_view bytes) {
    return bytes.starts_with(magic);
}

std::expected<std::vector<Frame>, std::string> FrameFile::partsOf(std::string_view bytes) {
    if (!isBegunBy(bytes))
        return failure("Not a scan file");
    if (bytes.size() < headSize)
        return failure(damaged);
    const auto numberAt = [&](std::size_t which) {
        return fixedNumberIn(bytes.substr(magic.size() + which * numberSize));
    };
    if (numberAt(0) > version)
        return failure("The scan file was written by a newer version of this program");
    auto rest = bytes.substr(headSize);
    if (numberAt(0) != version || numberAt(1) > rest.size())
        return failure(damaged);
    const auto list = unpacked({.bytes = rest.substr(0, numberAt(1)), .size = numberAt(2)});
    rest.remove_prefix(numberAt(1));
    ByteReader reader(list ? std::string_view(*list) : std::string_view());
    std::vector<Frame> parts;
    while (list && !reader.isAtEnd() && !reader.hasFailed()) {
        const auto size = reader.numberUpTo(rest.size());
        parts.push_back({.bytes = rest.substr(0, size),
                         .size = reader.numberUpTo(std::numeric_limits<std::uint32_t>::max())});
        rest.remove_prefix(size);
    }
    if (!list || reader.hasFailed() || !rest.empty())
        return failure(damaged);
    return parts;
}

} // namespace orbel
