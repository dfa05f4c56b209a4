#include "Platform/VolumeStatistics.h"

#include "Platform/macOS/ImportantUsage.h"
#include "Platform/macOS/Portable/SpaceUsedReply.h"

#include <array>

#include <sys/attr.h>
#include <sys/mount.h>
#include <sys/param.h>
#include <unistd.h>

namespace orbel::platform {

std::optional<VolumeStatistics> volumeStatistics(const std::string& path) {
    // Not statvfs: its block counts have 32 bits here and wrap on large volumes.
    struct statfs raw {};
    if (::statfs(path.c_str(), &raw) != 0)
        return std::nullopt;
    return VolumeStatistics{.blockSize = raw.f_bsize,
                            .totalBlocks = raw.f_blocks,
                            .freeBlocks = raw.f_bfree,
                            .availableBlocks = raw.f_bavail};
}

std::optional<std::uint64_t> volumeSpaceUsed(const std::string& path) {
    // The attributes of a volume are given for its root only, any other object is refused.
    struct statfs volume {};
    if (::statfs(path.c_str(), &volume) != 0)
        return std::nullopt;
    attrlist asked{.bitmapcount = ATTR_BIT_MAP_COUNT,
                   .reserved = 0,
                   .commonattr = 0,
                   .volattr = ATTR_VOL_INFO | ATTR_VOL_SPACEUSED,
                   .dirattr = 0,
                   .fileattr = 0,
                   .forkattr = 0};
    std::array<std::byte, 64> reply{};
    if (::getattrlist(volume.f_mntonname, &asked, reply.data(), reply.size(), 0) != 0)
        return std::nullopt;
    return spaceUsedIn(reply);
}

std::optional<std::uint64_t> volumeAvailableForImportantUsage(const std::string& path) {
    return importantUsageCapacity(path);
}

std::string dataVolumePath() {
    return "/System/Volumes/Data";
}

} // namespace orbel::platform
