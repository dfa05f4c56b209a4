#include "Platform/DirectoryReader.h"

#include "Util/Check.h"

#include <cerrno>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

/// The kernel's record of one entry, as getdents64 packs it; the name follows and ends in a zero byte.
struct Record {
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length;
    std::uint8_t type;
    char name[1];
};
constexpr std::size_t nameOffset = offsetof(Record, name);

constexpr unsigned neededAttributes =
    STATX_TYPE | STATX_NLINK | STATX_MTIME | STATX_INO | STATX_SIZE | STATX_BLOCKS | STATX_MNT_ID;

FileType typeOf(unsigned mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileType::regular;
    case S_IFDIR:
        return FileType::directory;
    case S_IFLNK:
        return FileType::symbolicLink;
    default:
        return FileType::other;
    }
}

void fill(EntryAttributes& attributes, const struct statx& raw) {
    attributes.type = typeOf(raw.stx_mode);
    attributes.allocatedBytes = raw.stx_blocks * 512;
    attributes.logicalBytes = raw.stx_size;
    attributes.modifiedSeconds =
        raw.stx_mtime.tv_sec; // the nanoseconds are never negative, so this rounds down
    attributes.inode = raw.stx_ino;
    attributes.linkCount = raw.stx_nlink;
}

MountIdentity placeOf(const struct statx& raw) {
    return {.device = static_cast<std::uint32_t>(makedev(raw.stx_dev_major, raw.stx_dev_minor)),
            .mountId = (raw.stx_mask & STATX_MNT_ID) != 0 ? raw.stx_mnt_id : 0};
}

} // namespace

std::optional<DirectoryReader> DirectoryReader::open(int parent, const char* name,
                                                     std::span<std::byte> buffer) {
    ORBEL_CHECK(buffer.size() >= bufferBytes, "a listing buffer of the full size");
    FileDescriptor directory(::openat(parent < 0 ? AT_FDCWD : parent, name,
                                      O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!directory)
        return std::nullopt;
    return DirectoryReader(std::move(directory), buffer);
}

std::optional<DirectoryReader::Own> DirectoryReader::measure() const {
    struct statx raw {};
    if (::statx(directory_.get(), "", AT_EMPTY_PATH, neededAttributes, &raw) != 0)
        return std::nullopt;
    Own own{.attributes = {}, .place = placeOf(raw)};
    fill(own.attributes, raw);
    return own;
}

DirectoryReader::Refill DirectoryReader::refill() {
    long count = 0;
    do {
        count = ::syscall(SYS_getdents64, directory_.get(), buffer_.data(), bufferBytes);
    } while (count < 0 && errno == EINTR);
    position_ = 0;
    used_ = count > 0 ? static_cast<std::size_t>(count) : 0;
    if (count < 0)
        return Refill::failed;
    return count == 0 ? Refill::end : Refill::entries;
}

DirectoryReader::Next DirectoryReader::next(DirectoryEntry& entry) {
    while (position_ < used_) {
        Record record;
        const std::byte* const start = buffer_.data() + position_;
        std::memcpy(&record, start, nameOffset);
        position_ += record.length;
        const char* const name = reinterpret_cast<const char*>(start) + nameOffset;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;

        entry.name = std::string_view(name);
        entry.place.reset();
        if (record.type == DT_DIR) {
            entry.isMeasured = false;
            entry.attributes = {.type = FileType::directory, .inode = record.inode};
            return Next::entry;
        }
        struct statx raw;
        if (::statx(directory_.get(), name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, neededAttributes, &raw)
            != 0) {
            if (errno == ENOENT)
                continue;
            return Next::unreadable;
        }
        entry.isMeasured = true;
        fill(entry.attributes, raw);
        entry.place = placeOf(raw);
        return Next::entry;
    }
    return Next::done;
}

std::optional<DirectoryReader::Own> measureEntry(int parent, const char* name) {
    struct statx raw {};
    if (::statx(parent < 0 ? AT_FDCWD : parent, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, neededAttributes,
                &raw)
        != 0)
        return std::nullopt;
    DirectoryReader::Own own{.attributes = {}, .place = placeOf(raw)};
    fill(own.attributes, raw);
    return own;
}

} // namespace orbel::platform
