#pragma once

#include "Platform/ObjectIdentity.h"
#include "Safety/FileStamp.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orbel {

/// What an object is recognised by later: an item as it lay in the Trash right after its move, or the folder
/// that it came from.
struct TrashedIdentity {
    std::uint64_t device = 0; ///< device number of the volume
    std::uint64_t inode = 0;
    std::uint64_t size = 0; ///< content length in bytes; of no meaning for a folder
    bool isDirectory = false;
    /// Recognises the object after its volume was mounted again under another device number. Absent where the
    /// system does not tell it.
    std::optional<platform::PersistentIdentity> persistent = std::nullopt;

    /// That of what lies at `path`, never following a link; absent when it cannot be read.
    static std::optional<TrashedIdentity> of(const std::string& path);

    /// That of an object whose stamp is known already.
    static TrashedIdentity of(const FileStamp& stamp, std::optional<platform::PersistentIdentity> persistent);

    /// Whether what lies at `path` now, with this stamp, is this object: see isSameObject. The persistent
    /// identity is asked for only where the devices differ.
    bool isOf(const FileStamp& now, const std::string& path) const;

    bool operator==(const TrashedIdentity&) const = default;
};

/// Whether `now` is the object that `then` was taken of: the same device, inode and directory flag and, for
/// anything but a folder, the same size. Where only the device differs the persistent identities decide; they
/// must then both be known and equal.
bool isSameObject(const TrashedIdentity& then, const TrashedIdentity& now);

} // namespace orbel
