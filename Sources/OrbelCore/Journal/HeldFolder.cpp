#include "Journal/HeldFolder.h"

#include "Platform/ExclusiveRename.h"
#include "Platform/OpenFolder.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace orbel {

std::expected<HeldFolder, int> HeldFolder::open(const std::string& realPath) {
    auto folder = platform::openFolderWithoutLinks(realPath);
    if (!folder)
        return std::unexpected(folder.error());
    return HeldFolder(std::move(*folder));
}

std::expected<HeldFolder, int> HeldFolder::openThroughLinks(const std::string& path) {
    auto folder = platform::openFolderThroughLinks(path);
    if (!folder)
        return std::unexpected(folder.error());
    return HeldFolder(std::move(*folder));
}

std::expected<HeldFolder, int> HeldFolder::openInside(const std::string& name) const {
    FileDescriptor folder(
        ::openat(folder_.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder)
        return std::unexpected(errno);
    return HeldFolder(std::move(folder));
}

std::expected<FileIdentity, int> HeldFolder::identityOf(const std::string& name) const {
    struct stat raw {};
    if (::fstatat(folder_.get(), name.c_str(), &raw, AT_SYMLINK_NOFOLLOW) != 0)
        return std::unexpected(errno);
    return FileIdentity{.device = static_cast<std::uint32_t>(raw.st_dev), .inode = raw.st_ino};
}

std::expected<FileIdentity, int> HeldFolder::identity() const {
    const auto status = platform::fileStatus(folder_.get());
    if (!status)
        return std::unexpected(errno);
    return FileIdentity::of(*status);
}

std::expected<FileDescriptor, int> HeldFolder::openForFlush() const {
    auto readable = openInside(".");
    if (!readable)
        return std::unexpected(readable.error());
    return std::move(readable->folder_);
}

std::expected<void, int> moveEntry(const HeldFolder& fromFolder, const std::string& from,
                                   const HeldFolder& toFolder, const std::string& to) {
    const auto item = fromFolder.identityOf(from);
    if (!item)
        return std::unexpected(item.error());
    auto moved = platform::renameExclusively(fromFolder.descriptor(), from, toFolder.descriptor(), to);
    // A server's answer can be lost on its way: the item then went although the call failed. A taken name
    // says nothing of the kind; what goes by it may even be another link to the same file.
    if (!moved && moved.error() != EEXIST && toFolder.identityOf(to) == *item && !fromFolder.identityOf(from))
        return {};
    return moved;
}

} // namespace orbel
