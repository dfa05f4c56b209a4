#include "Platform/OpenFolder.h"

#include "Util/PathText.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

namespace orbel::platform {

std::expected<FileDescriptor, int> openFolderWithoutLinks(const std::string& path) {
    if (!path.starts_with('/') || path.find('\0') != std::string::npos
        || std::ranges::any_of(pathComponents(path),
                               [](auto component) { return component == "." || component == ".."; }))
        return std::unexpected(EINVAL);
    // Not O_SEARCH, which the file systems of users and network shares do not all take.
    FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW_ANY | O_CLOEXEC));
    if (!folder)
        return std::unexpected(errno);
    return folder;
}

std::expected<FileDescriptor, int> openFolderThroughLinks(const std::string& path) {
    FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return std::unexpected(errno);
    return folder;
}

} // namespace orbel::platform
