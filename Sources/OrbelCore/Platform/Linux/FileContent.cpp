#include "Platform/FileContent.h"

#include "Platform/OpenFolder.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>

namespace orbel::platform {

namespace {

constexpr std::array<decltype(__fsword_t{}), 5> magicsWithSharedBlocks{
    BTRFS_SUPER_MAGIC,
    XFS_SUPER_MAGIC,
    OCFS2_SUPER_MAGIC,
    OVERLAYFS_SUPER_MAGIC,               // passes the question on
    static_cast<__fsword_t>(0xca451a4e), // bcachefs, which the header does not know yet
};

bool canShareBlocks(int descriptor) {
    struct statfs raw {};
    return ::fstatfs(descriptor, &raw) == 0
           && std::ranges::find(magicsWithSharedBlocks, raw.f_type) != magicsWithSharedBlocks.end();
}

/// Room for a question about extents and the answers to it.
struct ExtentMap {
    static constexpr std::size_t extentCount = 128;

    alignas(fiemap) std::array<std::byte, sizeof(fiemap) + extentCount * sizeof(fiemap_extent)> bytes{};
};

FileDescriptor openPath(const std::string& path, int flags) {
    FileDescriptor descriptor(::open(path.c_str(), flags));
    if (descriptor || errno != ENAMETOOLONG)
        return descriptor;
    const auto folder = openFolderWithoutLinks(std::string(parentPath(path)));
    if (!folder) {
        errno = folder.error();
        return {};
    }
    return FileDescriptor(::openat(folder->get(), std::string(lastPathComponent(path)).c_str(), flags));
}

} // namespace

std::expected<FileContent, int> FileContent::open(const std::string& path) {
    // Only its owner may read a file without leaving a trace.
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    FileDescriptor descriptor = openPath(path, flags | O_NOATIME);
    if (!descriptor && errno == EPERM)
        descriptor = openPath(path, flags);
    if (!descriptor)
        return std::unexpected(errno);
    const auto status = fileStatus(descriptor.get());
    if (!status || status->type != FileType::regular)
        return std::unexpected(EINVAL);
    return FileContent{.descriptor = std::move(descriptor), .status = *status};
}

void FileContent::expectOneReading() const {
    // Hints: what a file system makes of them changes no result.
    static_cast<void>(::posix_fadvise(descriptor.get(), 0, 0, POSIX_FADV_SEQUENTIAL));
    static_cast<void>(::posix_fadvise(descriptor.get(), 0, 0, POSIX_FADV_NOREUSE));
}

bool sharesBlocks(const std::string& path) {
    const auto file = FileContent::open(path);
    if (!file || !canShareBlocks(file->descriptor.get()))
        return false;
    std::uint64_t offset = 0;
    while (true) {
        ExtentMap room;
        // Taken from the zeroed room: the system's declaration ends in an array of no length, which no
        // initializer may name.
        fiemap question;
        std::memcpy(&question, room.bytes.data(), sizeof question);
        question.fm_start = offset;
        question.fm_length = FIEMAP_MAX_OFFSET - offset;
        question.fm_extent_count = ExtentMap::extentCount;
        std::memcpy(room.bytes.data(), &question, sizeof question);
        if (::ioctl(file->descriptor.get(), FS_IOC_FIEMAP, room.bytes.data()) != 0)
            return false;
        std::memcpy(&question, room.bytes.data(), sizeof question);
        if (question.fm_mapped_extents == 0)
            return false;
        fiemap_extent extent{};
        for (std::uint32_t i = 0; i < question.fm_mapped_extents; ++i) {
            std::memcpy(&extent, room.bytes.data() + sizeof question + i * sizeof extent, sizeof extent);
            if ((extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0)
                return true;
        }
        if ((extent.fe_flags & FIEMAP_EXTENT_LAST) != 0)
            return false;
        offset = extent.fe_logical + extent.fe_length;
    }
}

} // namespace orbel::platform
