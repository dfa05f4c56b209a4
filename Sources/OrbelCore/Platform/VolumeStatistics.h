#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orbel::platform {

/// What the file system that holds a path says of itself, in blocks of `blockSize` bytes.
struct VolumeStatistics {
    std::uint64_t blockSize = 0;
    std::uint64_t totalBlocks = 0;
    std::uint64_t freeBlocks = 0;      ///< free, the reserved ones included
    std::uint64_t availableBlocks = 0; ///< free for an ordinary user
};

/// Absent when the file system cannot be asked.
std::optional<VolumeStatistics> volumeStatistics(const std::string& path);

/// The used bytes as the volume itself counts them (shared containers, snapshots); absent where the system
/// has no such figure.
std::optional<std::uint64_t> volumeSpaceUsed(const std::string& path);

/// Free bytes plus what the system can free on its own for an important task; absent where it has
/// no such figure.
std::optional<std::uint64_t> volumeAvailableForImportantUsage(const std::string& path);

/// The root of the volume that holds the user's data, which is what "the whole disk" means.
std::string dataVolumePath();

} // namespace orbel::platform
