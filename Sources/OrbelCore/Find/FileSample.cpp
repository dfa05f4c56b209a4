#include "Find/FileSample.h"

#include "Platform/FileContent.h"
#include "Util/ReadAt.h"

#include <algorithm>
#include <array>
#include <functional>
#include <span>
#include <string_view>

namespace orbel {

std::optional<std::size_t> sampleHash(const std::string& path, const FileStamp& stamp) {
    const auto content = platform::FileContent::open(path);
    if (!content || !stamp.isUnchanged(FileStamp::of(content->status)))
        return std::nullopt;
    std::array<char, 2 * sampleEndBytes>
        sample; // NOLINT(cppcoreguidelines-pro-type-member-init): filled below
    std::size_t length = 0;
    const auto append = [&](std::uint64_t offset, std::size_t bytes) {
        const auto room = std::span(sample).subspan(length, bytes);
        length += bytes;
        return readAt(content->descriptor.get(), room, offset) == bytes;
    };
    if (!append(0, static_cast<std::size_t>(std::min<std::uint64_t>(stamp.size, sampleEndBytes))))
        return std::nullopt;
    if (stamp.size > sampleEndBytes && !append(stamp.size - sampleEndBytes, sampleEndBytes))
        return std::nullopt;
    return std::hash<std::string_view>()({sample.data(), length});
}

} // namespace orbel
