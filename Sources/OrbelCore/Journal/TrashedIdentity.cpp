#include "Journal/TrashedIdentity.h"

namespace orbel {

std::optional<TrashedIdentity> TrashedIdentity::of(const std::string& path) {
    const auto stamp = FileStamp::of(path);
    if (!stamp)
        return std::nullopt;
    return of(*stamp, platform::persistentIdentity(path, stamp->identity.inode));
}

TrashedIdentity TrashedIdentity::of(const FileStamp& stamp,
                                    std::optional<platform::PersistentIdentity> persistent) {
    return {.device = stamp.identity.device,
            .inode = stamp.identity.inode,
            .size = stamp.size,
            .isDirectory = stamp.isDirectory,
            .persistent = std::move(persistent)};
}

bool TrashedIdentity::isOf(const FileStamp& now, const std::string& path) const {
    const bool isSameDevice = device == now.identity.device;
    return isSameObject(
        *this, of(now, isSameDevice ? std::nullopt : platform::persistentIdentity(path, now.identity.inode)));
}

bool isSameObject(const TrashedIdentity& then, const TrashedIdentity& now) {
    const bool sameVolume =
        then.device == now.device || (then.persistent && then.persistent == now.persistent);
    return sameVolume && then.inode == now.inode && then.isDirectory == now.isDirectory
           && (then.isDirectory || then.size == now.size);
}

} // namespace orbel
