#pragma once

#include "Platform/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace orbel {

/// Names one file system object by device and inode, independent of the path that leads to it. A number is
/// reused once its object is gone, so an identity alone does not prove that an object is still the same
/// one: see FileStamp.
struct FileIdentity {
    /// The device number as an unsigned 32-bit pattern, widened, never sign-extended.
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    /// The identity of what lies at `path`, of a link itself and never of its target; absent when it cannot
    /// be read.
    static std::optional<FileIdentity> of(const std::string& path);
    static FileIdentity of(const platform::FileStatus& status) { return {status.device, status.inode}; }

    /// "{device}:{inode}", both decimal.
    std::string description() const;

    bool operator==(const FileIdentity&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const FileIdentity& identity);

} // namespace orbel

template <>
struct std::hash<orbel::FileIdentity> {
    std::size_t operator()(const orbel::FileIdentity& identity) const noexcept {
        // Inodes run in sequence and devices are few: one multiplication by 2^64/φ spreads both
        // over all bits.
        return static_cast<std::size_t>((identity.inode ^ (identity.device << 40)) * 0x9E3779B97F4A7C15ULL);
    }
};
