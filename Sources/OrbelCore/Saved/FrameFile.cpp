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

/// What stands before the parts of a file.
struct PartList {
    std::string sizes;      ///< of each part, compressed and not
    std::string_view parts; ///< what lies behind the list: one after another

    static std::expected<PartList, std::string> of(std::string_view bytes) {
        if (!FrameFile::isBegunBy(bytes))
            return failure("Not a scan file");
        if (bytes.size() < headSize)
            return failure(FrameFile::damaged);
        const auto numberAt = [&](std::size_t which) {
            return fixedNumberIn(bytes.substr(magic.size() + which * numberSize));
        };
        if (numberAt(0) > version)
            return failure("The scan file was written by a newer version of this program");
        const auto rest = bytes.substr(headSize);
        if (numberAt(0) != version || numberAt(1) > rest.size())
            return failure(FrameFile::damaged);
        auto sizes = unpacked({.bytes = rest.substr(0, numberAt(1)), .size = numberAt(2)});
        if (!sizes)
            return failure(FrameFile::damaged);
        return PartList{.sizes = *std::move(sizes), .parts = rest.substr(numberAt(1))};
    }
};

/// Takes a part off `rest`, of the size that `sizes` gives next.
Frame nextPart(ByteReader& sizes, std::string_view& rest) {
    const auto size = sizes.numberUpTo(rest.size());
    const Frame part{.bytes = rest.substr(0, size),
                     .size = sizes.numberUpTo(std::numeric_limits<std::uint32_t>::max())};
    rest.remove_prefix(size);
    return part;
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
    const auto list = PartList::of(bytes);
    if (!list)
        return std::unexpected(list.error());
    auto rest = list->parts;
    std::vector<Frame> parts;
    ByteReader reader(list->sizes);
    while (!reader.isAtEnd() && !reader.hasFailed())
        parts.push_back(nextPart(reader, rest));
    if (reader.hasFailed() || !rest.empty())
        return failure(damaged);
    return parts;
}

std::optional<Frame> FrameFile::firstPartIn(std::string_view beginning) {
    const auto list = PartList::of(beginning);
    if (!list)
        return std::nullopt;
    auto rest = list->parts;
    ByteReader reader(list->sizes);
    const auto part = nextPart(reader, rest);
    return reader.hasFailed() ? std::nullopt : std::optional(part);
}

} // namespace orbel
