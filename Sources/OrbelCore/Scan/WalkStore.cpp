#include "Scan/WalkStore.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace orbel::walk {

std::int32_t minutesOf(std::int64_t seconds) {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t minutes =
        std::chrono::floor<std::chrono::minutes>(std::chrono::seconds(seconds)).count();
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(minutes, Limits::min(), Limits::max()));
}

std::uint16_t cappedLinks(std::uint64_t links) {
    return static_cast<std::uint16_t>(
        std::min<std::uint64_t>(links, std::numeric_limits<std::uint16_t>::max()));
}

std::uint32_t Chunk::append(std::string_view name, NodeFlags nodeFlags, FileKind kind) {
    const std::uint32_t place = count++;
    nameLength[place] = static_cast<std::uint16_t>(name.size());
    name.copy(names.data() + nameBytes, name.size());
    nameBytes += static_cast<std::uint32_t>(name.size());
    flags[place] = nodeFlags.rawValue;
    kinds[place] = static_cast<std::uint8_t>(kind);
    return place;
}

void Chunk::setAttributes(std::uint32_t place, const platform::EntryAttributes& attributes) {
    allocated[place] = attributes.type == platform::FileType::directory ? 0 : attributes.allocatedBytes;
    logical[place] = attributes.logicalBytes;
    inodes[place] = attributes.inode;
    modified[place] = minutesOf(attributes.modifiedSeconds);
    links[place] = cappedLinks(attributes.linkCount);
}

Chunk& WorkerStore::chunkFor(std::string_view name) {
    if (chunks.empty() || !chunks.back()->hasRoomFor(name))
        chunks.push_back(std::make_unique<Chunk>());
    return *chunks.back();
}

} // namespace orbel::walk
