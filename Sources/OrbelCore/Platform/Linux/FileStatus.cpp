#include "Platform/FileStatus.h"

#include "Platform/OpenFolder.h"
#include "Util/PathText.h"
#include "Util/UnixTime.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace orbel::platform {

namespace {

FileType typeOf(mode_t mode) {
    switch (mode & S_IFMT) {
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

FileStatus statusOf(const struct stat& raw) {
    constexpr std::uint64_t blockBytes = 512; // the unit of st_blocks on every file system
    return {.device = static_cast<std::uint32_t>(raw.st_dev),
            .inode = raw.st_ino,
            .type = typeOf(raw.st_mode),
            .size = static_cast<std::uint64_t>(std::max<off_t>(raw.st_size, 0)),
            .allocatedBytes = static_cast<std::uint64_t>(std::max<blkcnt_t>(raw.st_blocks, 0)) * blockBytes,
            .modifiedSeconds = raw.st_mtim.tv_sec,
            .modifiedNanos = nanosSince1970(raw.st_mtim.tv_sec, raw.st_mtim.tv_nsec),
            .linkCount = raw.st_nlink,
            .owner = raw.st_uid};
}

} // namespace

std::optional<FileStatus> fileStatus(const std::string& path) {
    struct stat raw {};
    if (::lstat(path.c_str(), &raw) == 0)
        return statusOf(raw);
    if (errno != ENAMETOOLONG)
        return std::nullopt;
    const auto folder = openFolderWithoutLinks(std::string(parentPath(path)));
    if (!folder) {
        errno = folder.error();
        return std::nullopt;
    }
    const std::string name(lastPathComponent(path));
    if (::fstatat(folder->get(), name.c_str(), &raw, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return statusOf(raw);
}

std::optional<FileStatus> fileStatus(int descriptor) {
    struct stat raw {};
    if (::fstat(descriptor, &raw) != 0)
        return std::nullopt;
    return statusOf(raw);
}

bool isSystemRestricted(const std::string& path) {
    struct statx raw {};
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &raw) != 0)
        return false;
    return (raw.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0;
}

} // namespace orbel::platform
