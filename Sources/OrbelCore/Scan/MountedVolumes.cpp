#include "Scan/MountedVolumes.h"

#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace orbel {

namespace {

/// A disk names its device; a pool of disks has a name of its own.
bool isOnDisk(const platform::Mount& mount) {
    constexpr std::array<std::string_view, 3> images{"squashfs", "iso9660", "udf"};
    if (mount.isNetwork || std::ranges::find(images, mount.fileSystem) != images.end())
        return false;
    return mount.source.starts_with('/') || mount.fileSystem == "zfs" || mount.path == "/";
}

} // namespace

std::vector<MountedVolume> mountedVolumes(const std::vector<platform::Mount>& mounts,
                                          const ReadVolume& read) {
    std::vector<const platform::Mount*> candidates;
    for (const auto& mount : mounts) {
        if (isOnDisk(mount))
            candidates.push_back(&mount);
    }
    // The shortest path of a file system is where it is at home; other views of it come later and go.
    std::ranges::stable_sort(candidates, std::less{},
                             [](const auto* mount) { return std::pair(mount->path.size(), mount->path); });
    std::vector<MountedVolume> volumes;
    for (const auto* mount : candidates) {
        const bool isKnown = std::ranges::any_of(volumes, [&](const MountedVolume& volume) {
            return volume.path == mount->path
                   || (volume.source == mount->source && volume.fileSystem == mount->fileSystem);
        });
        if (isKnown)
            continue;
        const auto info = read(mount->path);
        if (info && info->total > 0)
            volumes.push_back({mount->path, mount->fileSystem, mount->source, *info});
    }
    std::ranges::sort(volumes, std::less{}, &MountedVolume::path);
    return volumes;
}

const platform::Mount* mountHolding(const std::vector<platform::Mount>& mounts, const std::string& path) {
    const platform::Mount* holder = nullptr;
    for (const auto& mount : mounts) {
        // Of two on one mount point the later one lies on top.
        if (isPathInside(path, mount.path) && (holder == nullptr || mount.path.size() >= holder->path.size()))
            holder = &mount;
    }
    return holder;
}

} // namespace orbel
