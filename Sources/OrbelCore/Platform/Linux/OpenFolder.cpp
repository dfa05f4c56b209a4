#include "Platform/OpenFolder.h"

#include "Util/PathText.h"

#include <cerrno>

#include <fcntl.h>

namespace orbel::platform {

std::expected<FileDescriptor, int> openFolderWithoutLinks(const std::string& path) {
    if (!path.starts_with('/') || path.find('\0') != std::string::npos)
        return std::unexpected(EINVAL);
    // Name by name, because that works for paths of any length and where openat2 is missing or barred by a
    // sandbox. Its RESOLVE_NO_SYMLINKS, in one call, would promise nothing more: each step holds the folder
    // it came to.
    constexpr int flags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor folder(::open("/", flags));
    for (const auto component : pathComponents(path)) {
        if (!folder)
            break;
        if (component == "." || component == "..")
            return std::unexpected(EINVAL);
        folder = FileDescriptor(::openat(folder.get(), std::string(component).c_str(), flags));
    }
    if (!folder)
        return std::unexpected(errno);
    return folder;
}

} // namespace orbel::platform
