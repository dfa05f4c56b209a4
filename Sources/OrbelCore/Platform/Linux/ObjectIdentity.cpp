#include "Platform/ObjectIdentity.h"

#include "Util/FileDescriptor.h"
#include "Util/PathText.h"
#include "Util/UnixTime.h"
#include "Util/Uuid.h"

#include <array>

#include <fcntl.h>
#include <linux/btrfs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/sysmacros.h>

namespace orbel::platform {

namespace {

// None of the calls below needs special rights. Newer than the headers of Debian 12: FS_IOC_GETFSUUID
// (Linux 6.9, asks any file system) and EXT4_IOC_GETFSUUID (6.0), whose number was made from the size of a
// header before the UUID.
struct FileSystemUuid {
    std::uint8_t length;
    UuidBytes uuid;
};
constexpr unsigned long getFileSystemUuid = _IOR(0x15, 0, FileSystemUuid);

struct Ext4UuidHeader {
    std::uint32_t length;
    std::uint32_t flags;
};
struct Ext4Uuid {
    Ext4UuidHeader header;
    UuidBytes uuid;
};
constexpr unsigned long getExt4Uuid = _IOR('f', 44, Ext4UuidHeader);

/// Absent for a UUID of zeros, which stands for none.
std::optional<std::string> textOf(const UuidBytes& uuid) {
    if (uuid == UuidBytes{})
        return std::nullopt;
    return uuidText(uuid);
}

std::optional<std::string> btrfsVolume(int folder) {
    btrfs_ioctl_fs_info_args info{};
    btrfs_ioctl_ino_lookup_args subvolume{};
    subvolume.objectid =
        256; // the first inode of every subvolume; asked of no tree, its own answers with its number
    if (::ioctl(folder, BTRFS_IOC_FS_INFO, &info) != 0
        || ::ioctl(folder, BTRFS_IOC_INO_LOOKUP, &subvolume) != 0)
        return std::nullopt;
    auto volume = textOf(std::to_array(info.fsid));
    if (volume)
        *volume += "/" + std::to_string(subvolume.treeid);
    return volume;
}

std::optional<std::string> volumeOf(int folder) {
    struct statfs kind {};
    if (::fstatfs(folder, &kind) != 0)
        return std::nullopt;
    if (kind.f_type == BTRFS_SUPER_MAGIC)
        return btrfsVolume(folder);
    FileSystemUuid general{};
    if (::ioctl(folder, getFileSystemUuid, &general) == 0 && general.length == general.uuid.size())
        if (auto volume = textOf(general.uuid))
            return volume;
    Ext4Uuid ext4{.header = {.length = 16, .flags = 0}, .uuid = {}};
    if (kind.f_type == EXT4_SUPER_MAGIC && ::ioctl(folder, getExt4Uuid, &ext4) == 0)
        return textOf(ext4.uuid);
    return std::nullopt;
}

/// The volume with this device number; absent when the folder lies on another one.
std::optional<std::string> volumeAt(const std::string& folderPath, dev_t device) {
    const FileDescriptor folder(::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!folder || ::fstat(folder.get(), &status) != 0 || status.st_dev != device)
        return std::nullopt;
    return volumeOf(folder.get());
}

} // namespace

std::optional<PersistentIdentity> persistentIdentity(const std::string& path, std::uint64_t inode,
                                                     KnownVolumes& known) {
    struct statx object {};
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_INO | STATX_BTIME,
                &object)
            != 0
        || object.stx_ino != inode)
        return std::nullopt;
    // A birth at the very start of 1970 is what images have that were built without one.
    const auto birth = nanosSince1970(object.stx_btime.tv_sec, object.stx_btime.tv_nsec);
    if ((object.stx_mask & STATX_BTIME) == 0 || birth == 0)
        return std::nullopt;
    const auto device = makedev(object.stx_dev_major, object.stx_dev_minor);
    auto volume = known.find(device);
    // The object itself cannot be opened when it is a link, and must not be when it is a device or a pipe.
    // Its folder lies on the same file system, unless a mount says otherwise.
    if (volume == known.end())
        volume = known.emplace(device, volumeAt(std::string(parentPath(path)), device)).first;
    const auto& name = volume->second;
    if (!name)
        return std::nullopt;
    return PersistentIdentity{.volume = *name, .birthNanos = birth};
}

std::optional<PersistentIdentity> persistentIdentity(const std::string& path, std::uint64_t inode) {
    KnownVolumes known;
    return persistentIdentity(path, inode, known);
}

} // namespace orbel::platform
