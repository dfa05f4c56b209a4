#include "Platform/VolumeStatistics.h"

#include "Platform/Home.h"
#include "Platform/MountTable.h"

#include <cstdlib>
#include <memory>

#include <sys/statvfs.h>

namespace orbel::platform {

namespace {

bool isBelow(std::string_view path, std::string_view folder) {
    return folder == "/" || path == folder
           || (path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/');
}

} // namespace

std::optional<VolumeStatistics> volumeStatistics(const std::string& path) {
    struct statvfs raw {};
    if (::statvfs(path.c_str(), &raw) != 0)
        return std::nullopt;
    return VolumeStatistics{.blockSize = raw.f_frsize != 0 ? raw.f_frsize : raw.f_bsize,
                            .totalBlocks = raw.f_blocks,
                            .freeBlocks = raw.f_bfree,
                            .availableBlocks = raw.f_bavail};
}

std::optional<std::uint64_t> volumeSpaceUsed(const std::string&) {
    return std::nullopt;
}

std::optional<std::uint64_t> volumeAvailableForImportantUsage(const std::string&) {
    return std::nullopt;
}

std::string dataVolumePath() {
    const auto home = homeFolder();
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(home.c_str(), nullptr), &std::free);
    const std::string_view resolved = real ? std::string_view(real.get()) : std::string_view(home);
    std::string deepest = "/";
    for (const auto& mount : mountTable()) {
        // Of mounts on the same point the last one is what is seen.
        if (mount.path.size() >= deepest.size() && isBelow(resolved, mount.path))
            deepest = mount.path;
    }
    return deepest;
}

} // namespace orbel::platform
