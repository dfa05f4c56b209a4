#pragma once

#include "Platform/MountTable.h"
#include "Scan/VolumeInfo.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// A mounted file system that a person may want to measure.
struct MountedVolume {
    std::string path;       ///< its mount point
    std::string fileSystem; ///< type, such as "ext4"
    std::string source;     ///< what is mounted, such as "/dev/sda1"
    VolumeInfo info;

    bool operator==(const MountedVolume&) const = default;
};

using ReadVolume = std::function<std::optional<VolumeInfo>(const std::string& path)>;

/// Of these mounts the file systems on disks, each once, "/" first and the rest by path. Left out: what the
/// kernel makes up, what lies in memory, images that are only read, second views of the same file system, and
/// network file systems, because a question to a dead server never returns.
std::vector<MountedVolume> mountedVolumes(const std::vector<platform::Mount>& mounts, const ReadVolume& read);

/// The mount that holds a path, by its text alone; absent when the table has no "/".
const platform::Mount* mountHolding(const std::vector<platform::Mount>& mounts, const std::string& path);

} // namespace orbel
