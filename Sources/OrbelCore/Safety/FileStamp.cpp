#include "Safety/FileStamp.h"

namespace orbel {

std::optional<FileStamp> FileStamp::of(const std::string& path) {
    const auto status = platform::fileStatus(path);
    if (!status)
        return std::nullopt;
    return of(*status);
}

FileStamp FileStamp::of(const platform::FileStatus& status) {
    return {.identity = FileIdentity::of(status),
            .size = status.size,
            .modifiedNanos = status.modifiedNanos,
            .isDirectory = status.type == platform::FileType::directory};
}

bool FileStamp::isUnchanged(const FileStamp& other) const {
    return identity == other.identity && isDirectory == other.isDirectory
           && modifiedNanos == other.modifiedNanos && (isDirectory || size == other.size);
}

} // namespace orbel
