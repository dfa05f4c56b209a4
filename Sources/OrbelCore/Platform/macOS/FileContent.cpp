#include "Platform/FileContent.h"

#include <cerrno>

#include <fcntl.h>

namespace orbel::platform {

std::expected<FileContent, int> FileContent::open(const std::string& path) {
    // There is no way to leave the access time alone; APFS brings it up to date only now and then.
    FileDescriptor descriptor(
        ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!descriptor)
        return std::unexpected(errno);
    const auto status = fileStatus(descriptor.get());
    if (!status || status->type != FileType::regular)
        return std::unexpected(EINVAL);
    return FileContent{.descriptor = std::move(descriptor), .status = *status};
}

void FileContent::expectOneReading() const {
    // Not F_NOCACHE: with it nothing is read ahead, which costs more than it spares.
    static_cast<void>(::fcntl(descriptor.get(), F_RDAHEAD, 1));
}

bool sharesBlocks(const std::string&) {
    // A scan has asked already: the listing of a folder tells it of every entry.
    return false;
}

} // namespace orbel::platform
