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

} // namespace

std::optional<PersistentIdentity> persistentIdentity(const std::string& path, std::uint64_t inode) {
    struct stat object {};
    struct stat above {};
    struct statfs volume {};
    // The folder is asked for the volume, because asking the object would follow a link.
    const std::string folder(parentPath(path));
    if (::lstat(path.c_str(), &object) != 0 || object.st_ino != inode || ::stat(folder.c_str(), &above) != 0
        || above.st_dev != object.st_dev || ::statfs(folder.c_str(), &volume) != 0)
        return std::nullopt;
    const auto birth = nanosSince1970(object.st_birthtimespec.tv_sec, object.st_birthtimespec.tv_nsec);
    auto uuid = birth == 0 ? std::nullopt : volumeUuid(volume.f_mntonname);
    if (!uuid)
        return std::nullopt;
    return PersistentIdentity{.volume = *std::move(uuid), .birthNanos = birth};
}

} // namespace orbel::platform
