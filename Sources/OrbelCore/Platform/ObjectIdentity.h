#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace orbel::platform {

/// What names an object, together with its inode, for as long as it exists: unlike a device number it
/// stays the same when the volume is mounted again, and unlike an inode alone it is not taken over by
/// a later object.
struct PersistentIdentity {
    /// The file system's own UUID; where its inodes count within a part of it, as in the
    /// subvolumes of btrfs, followed by "/" and the number of that part.
    std::string volume;
    std::int64_t birthNanos = 0; ///< when the object was made, nanoseconds since 1970 UTC

    bool operator==(const PersistentIdentity&) const = default;
};

/// That of what lies at `path`, never following a link, provided that it still has this inode. Absent when
/// the file system keeps no birth time, when its UUID cannot be learned without special rights, or when the
/// object is gone.
std::optional<PersistentIdentity> persistentIdentity(const std::string& path, std::uint64_t inode);

/// The `volume` of each device number, absent where it has none: for objects that are asked about within a
/// moment of each other, since numbers change when volumes are mounted.
using KnownVolumes = std::map<std::uint64_t, std::optional<std::string>>;
std::optional<PersistentIdentity> persistentIdentity(const std::string& path, std::uint64_t inode,
                                                     KnownVolumes& known);

} // namespace orbel::platform
