#include "Platform/ObjectIdentity.h"

#include "Util/PathText.h"
#include "Util/UnixTime.h"
#include "Util/Uuid.h"

#include <sys/attr.h>
#include <sys/mount.h>
#include <sys/param.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

/// What getattrlist() returns for the volume's UUID: its length, then the 16 bytes.
struct UuidReply {
    std::uint32_t length;
    UuidBytes uuid;
};

std::optional<std::string> volumeUuid(const char* mountPoint) {
    attrlist asked{.bitmapcount = ATTR_BIT_MAP_COUNT,
                   .reserved = 0,
                   .commonattr = 0,
                   .volattr = ATTR_VOL_INFO | ATTR_VOL_UUID,
                   .dirattr = 0,
                   .fileattr = 0,
                   .forkattr = 0};
    UuidReply reply{};
    if (::getattrlist(mountPoint, &asked, &reply, sizeof(reply), 0) != 0 || reply.length != sizeof(reply)
        || reply.uuid == UuidBytes{})
        return std::nullopt;
    return uuidText(reply.uuid);
}

/// The volume with this device number; absent when the folder lies on another one.
std::optional<std::string> volumeAt(const std::string& folder, dev_t device) {
    struct stat status {};
    struct statfs volume {};
    if (::stat(folder.c_str(), &status) != 0 || status.st_dev != device
        || ::statfs(folder.c_str(), &volume) != 0)
        return std::nullopt;
    return volumeUuid(volume.f_mntonname);
}

} // namespace

std::optional<PersistentIdentity> persistentIdentity(const std::string& path, std::uint64_t inode,
                                                     KnownVolumes& known) {
    struct stat object {};
    if (::lstat(path.c_str(), &object) != 0 || object.st_ino != inode)
        return std::nullopt;
    const auto birth = nanosSince1970(object.st_birthtimespec.tv_sec, object.st_birthtimespec.tv_nsec);
    if (birth == 0)
        return std::nullopt;
    const auto device = static_cast<std::uint32_t>(object.st_dev);
    auto volume = known.find(device);
    // The folder is asked for the volume, because asking the object would follow a link.
    if (volume == known.end())
        volume = known.emplace(device, volumeAt(std::string(parentPath(path)), object.st_dev)).first;
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
