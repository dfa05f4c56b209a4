#include "Platform/FileStatus.h"

#include "Platform/macOS/StatFields.h"
#include "Util/UnixTime.h"

#include <sys/stat.h>

namespace orbel::platform {

namespace {

FileStatus statusOf(const struct stat& raw) {
    return {.device = deviceOf(raw),
            .inode = raw.st_ino,
            .type = typeOf(raw),
            .size = sizeOf(raw),
            .allocatedBytes = allocatedBytesOf(raw),
            .modifiedSeconds = raw.st_mtimespec.tv_sec,
            .modifiedNanos = nanosSince1970(raw.st_mtimespec.tv_sec, raw.st_mtimespec.tv_nsec),
            .linkCount = raw.st_nlink,
            .owner = raw.st_uid};
}

} // namespace

std::optional<FileStatus> fileStatus(const std::string& path) {
    struct stat raw {};
    if (::lstat(path.c_str(), &raw) != 0)
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
    struct stat raw {};
    return ::lstat(path.c_str(), &raw) == 0 && (raw.st_flags & SF_RESTRICTED) != 0;
}

} // namespace orbel::platform
