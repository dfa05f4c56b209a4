#pragma once

#include "Platform/FileStatus.h"
#include "Util/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace orbel::platform {

/// What the walker keeps of one object.
struct EntryAttributes {
    FileType type = FileType::other;
    bool isDataless = false;     ///< its data lives in the cloud only
    bool mayShareBlocks = false; ///< its blocks may belong to another file too
    bool isAlias = false;        ///< a file of the file manager that points elsewhere
    std::uint64_t allocatedBytes = 0;
    std::uint64_t logicalBytes = 0;
    std::int64_t modifiedSeconds = 0; ///< since 1970 UTC, rounded toward minus infinity
    std::uint64_t inode = 0;
    std::uint64_t linkCount = 1;
};

/// Where an object lives: the file system and the mount through which it was reached.
struct MountIdentity {
    std::uint64_t device = 0;  ///< as FileStatus::device
    std::uint64_t mountId = 0; ///< 0 where the system has no such number; then only the device tells

    bool operator==(const MountIdentity&) const = default;
};

/// One entry of a listing.
struct DirectoryEntry {
    std::string_view name; ///< raw bytes, valid until the next call of next() or refill()
    /// False for a directory that is cheaper to measure on its own descriptor once it is open: `attributes`
    /// then holds only the type and an inode, and DirectoryReader::measure() gives the rest.
    bool isMeasured = false;
    /// Where the entry lives, when the listing says it; the same as the directory's for nearly all.
    std::optional<MountIdentity> place;
    EntryAttributes attributes;
};

/// Lists one directory without following links, into a buffer that the caller owns. One thread at a time.
///
/// Use: refill() until it gives `end` or `failed`; after each `entries`, next() until it gives `done`. The
/// descriptor stays open until the reader is destroyed or release() is called, so that what lies inside can
/// be opened relative to it, however long the path from the root has become.
class DirectoryReader {
public:
    enum class Refill : std::uint8_t { entries, end, failed };
    enum class Next : std::uint8_t {
        entry,      ///< the given entry is filled
        unreadable, ///< an entry that could not be measured; only its name, if any, is filled
        done        ///< the buffer is used up
    };

    /// A buffer of this size serves every directory; it must be aligned to 8 bytes and live as long
    /// as the reader.
    static constexpr std::size_t bufferBytes = 256 * 1024;

    /// Opens `name` inside the open directory `parent` (or, when `parent` is -1, the absolute path
    /// `name`), refusing anything but a real directory. `name` must end in a zero byte. Absent on failure,
    /// with errno set.
    static std::optional<DirectoryReader> open(int parent, const char* name, std::span<std::byte> buffer);

    /// The directory itself, asked of the descriptor; absent when that fails.
    struct Own {
        EntryAttributes attributes;
        MountIdentity place;
    };
    std::optional<Own> measure() const;

    /// Takes the next batch of entries from the system; `failed` comes with errno set.
    Refill refill();

    /// The next entry of the batch. "." and ".." never appear; an entry that vanished meanwhile
    /// is passed over.
    Next next(DirectoryEntry& entry);

    int descriptor() const { return directory_.get(); }

    /// Gives up the descriptor; the reader must not be used for listing any more.
    FileDescriptor release() { return std::move(directory_); }

private:
    DirectoryReader(FileDescriptor directory, std::span<std::byte> buffer)
        : directory_(std::move(directory)), buffer_(buffer) {}

    FileDescriptor directory_;
    std::span<std::byte> buffer_;
    std::size_t used_ = 0;     ///< Linux: bytes of the batch; macOS: records of the batch that are left
    std::size_t position_ = 0; ///< offset of the next record in the buffer
};

/// Measures `name` inside the open directory `parent`, never following a link or triggering an automount:
/// what the walker asks for a directory that could not be opened. Absent on failure.
std::optional<DirectoryReader::Own> measureEntry(int parent, const char* name);

} // namespace orbel::platform
