#pragma once

#include "Platform/FileStatus.h"

#include <algorithm>

#include <sys/stat.h>

namespace orbel::platform {

// How the fields of one `stat` read here, for the two sources that ask for one.

inline FileType typeOf(const struct stat& raw) {
    switch (raw.st_mode & S_IFMT) {
    case S_IFREG:
        return FileType::regular;
    case S_IFDIR:
        return FileType::directory;
    case S_IFLNK:
        return FileType::symbolicLink;
    default:
        return FileType::other;
    }
}

inline std::uint64_t deviceOf(const struct stat& raw) {
    return static_cast<std::uint32_t>(raw.st_dev);
}

inline std::uint64_t sizeOf(const struct stat& raw) {
    return static_cast<std::uint64_t>(std::max<off_t>(raw.st_size, 0));
}

inline std::uint64_t allocatedBytesOf(const struct stat& raw) {
    constexpr std::uint64_t blockBytes = 512; // the unit of st_blocks on every file system
    return static_cast<std::uint64_t>(std::max<blkcnt_t>(raw.st_blocks, 0)) * blockBytes;
}

} // namespace orbel::platform
