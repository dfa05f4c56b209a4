#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orbel::platform {

enum class FileType : std::uint8_t { regular, directory, symbolicLink, other };

/// What one `lstat` says of one object; a symbolic link is described itself, never its target.
struct FileStatus {
    std::uint64_t device = 0; ///< the device number as an unsigned 32-bit pattern, widened
    std::uint64_t inode = 0;
    FileType type = FileType::other;
    std::uint64_t size = 0;           ///< content length in bytes; a negative one reads as 0
    std::uint64_t allocatedBytes = 0; ///< blocks on disk × 512
    std::int64_t modifiedSeconds = 0; ///< modification time since 1970 UTC, rounded toward minus infinity
    std::int64_t modifiedNanos = 0;   ///< the same in nanoseconds; what these cannot reach is the nearest
    std::uint64_t linkCount = 0;
    std::uint32_t owner = 0; ///< user id
};

/// `lstat` of a path; absent when it fails, with errno set. On Linux the path may be longer than the system
/// takes one; then no link is followed anywhere on the way.
std::optional<FileStatus> fileStatus(const std::string& path);

/// The same for an open descriptor.
std::optional<FileStatus> fileStatus(int descriptor);

/// Whether the system itself guards the object against change (immutable or append-only on Linux, the
/// restricted flag on macOS). False when it cannot be asked.
bool isSystemRestricted(const std::string& path);

} // namespace orbel::platform
