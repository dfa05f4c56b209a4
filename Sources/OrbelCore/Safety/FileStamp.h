#pragma once

#include "Safety/FileIdentity.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace orbel {

/// What is remembered of an object so that a later look can prove it unchanged. It is captured by one
/// `lstat`, so the stamp of a link is that of the link itself, and the stamp of a folder says nothing about
/// what is inside it.
struct FileStamp {
    FileIdentity identity;
    std::uint64_t size = 0;         ///< content length in bytes
    std::int64_t modifiedNanos = 0; ///< modification time, nanoseconds since 1970 UTC
    bool isDirectory = false;       ///< false for a link, even one that leads to a folder

    /// The stamp of what lies at `path`; absent when it cannot be read, for any reason.
    static std::optional<FileStamp> of(const std::string& path);
    static FileStamp of(const platform::FileStatus& status);

    /// Whether `other` is the same object in the same state. The size of a folder is left out: it says
    /// nothing dependable about what the folder holds.
    bool isUnchanged(const FileStamp& other) const;

    bool operator==(const FileStamp&) const = default;
};

} // namespace orbel

template <>
struct std::hash<orbel::FileStamp> {
    std::size_t operator()(const orbel::FileStamp& stamp) const noexcept {
        // The identity tells nearly all stamps apart; the time separates the states of one object.
        return std::hash<orbel::FileIdentity>{}(stamp.identity)
               ^ std::hash<std::int64_t>{}(stamp.modifiedNanos);
    }
};
