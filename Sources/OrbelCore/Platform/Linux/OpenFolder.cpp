#include "Platform/OpenFolder.h"

#include "Util/PathText.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

constexpr int flags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// In one call; ENOSYS or EPERM where that is missing or barred by a sandbox.
FileDescriptor openAtOnce(const std::string& path) {
    struct open_how how {};
    how.flags = flags;
    how.resolve = RESOLVE_NO_SYMLINKS;
    return FileDescriptor(static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how)));
}

/// Name by name, which takes a path of any length.
FileDescriptor openByNames(const std::vector<std::string_view>& names) {
    FileDescriptor folder(::open("/", flags));
    for (const auto name : names) {
        if (!folder)
            break;
        folder = FileDescriptor(::openat(folder.get(), std::string(name).c_str(), flags));
    }
    return folder;
}

} // namespace

std::expected<FileDescriptor, int> openFolderWithoutLinks(const std::string& path) {
    const auto names = pathComponents(path);
    if (!path.starts_with('/') || path.find('\0') != std::string::npos
        || std::ranges::any_of(names, [](auto name) { return name == "." || name == ".."; }))
        return std::unexpected(EINVAL);
    auto folder = openAtOnce(path);
    if (!folder && (errno == ENOSYS || errno == EPERM || errno == ENAMETOOLONG))
        folder = openByNames(names);
    if (!folder)
        return std::unexpected(errno);
    return folder;
}

std::expected<FileDescriptor, int> openFolderThroughLinks(const std::string& path) {
    FileDescriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return std::unexpected(errno);
    return folder;
}

} // namespace orbel::platform
