#include "Platform/DirectoryReader.h"

#include "Platform/macOS/Portable/BulkRecords.h"
#include "Platform/macOS/StatFields.h"
#include "Util/Check.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/attr.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

static_assert(bulk::name == ATTR_CMN_NAME && bulk::objectType == ATTR_CMN_OBJTYPE
              && bulk::modificationTime == ATTR_CMN_MODTIME && bulk::finderInfo == ATTR_CMN_FNDRINFO
              && bulk::fileFlags == ATTR_CMN_FLAGS && bulk::fileId == ATTR_CMN_FILEID
              && bulk::entryError == ATTR_CMN_ERROR && bulk::returnedAttributes == ATTR_CMN_RETURNED_ATTRS);
static_assert(bulk::linkCount == ATTR_FILE_LINKCOUNT && bulk::totalSize == ATTR_FILE_TOTALSIZE
              && bulk::allocatedSize == ATTR_FILE_ALLOCSIZE && bulk::extendedFlags == ATTR_CMNEXT_EXT_FLAGS);
static_assert(bulk::datalessFlag == SF_DATALESS && (bulk::sharedBlocksFlags & EF_MAY_SHARE_BLOCKS) != 0);
static_assert(sizeof(attribute_set_t) == 20 && sizeof(attrreference_t) == 8 && sizeof(timespec) == 16);

DirectoryReader::Own ownFrom(const struct stat& raw) {
    return {.attributes = {.type = typeOf(raw),
                           .isDataless = (raw.st_flags & SF_DATALESS) != 0,
                           .allocatedBytes = allocatedBytesOf(raw),
                           .logicalBytes = sizeOf(raw),
                           // the nanoseconds are never negative, so this rounds down
                           .modifiedSeconds = raw.st_mtimespec.tv_sec,
                           .inode = raw.st_ino,
                           .linkCount = raw.st_nlink},
            .place = {.device = deviceOf(raw), .mountId = 0}};
}

} // namespace

std::optional<DirectoryReader> DirectoryReader::open(int parent, const char* name,
                                                     std::span<std::byte> buffer) {
    ORBEL_CHECK(buffer.size() >= bufferBytes, "a listing buffer of the full size");
    FileDescriptor directory(
        ::openat(parent < 0 ? AT_FDCWD : parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory)
        return std::nullopt;
    return DirectoryReader(std::move(directory), buffer);
}

std::optional<DirectoryReader::Own> DirectoryReader::measure() const {
    struct stat raw {};
    if (::fstat(directory_.get(), &raw) != 0)
        return std::nullopt;
    return ownFrom(raw);
}

DirectoryReader::Refill DirectoryReader::refill() {
    attrlist asked{.bitmapcount = ATTR_BIT_MAP_COUNT,
                   .reserved = 0,
                   .commonattr = bulk::commonGroup,
                   .volattr = bulk::volumeGroup,
                   .dirattr = bulk::directoryGroup,
                   .fileattr = bulk::fileGroup,
                   .forkattr = bulk::extendedGroup};
    int records = 0;
    do {
        records =
            ::getattrlistbulk(directory_.get(), &asked, buffer_.data(), bufferBytes, FSOPT_ATTR_CMN_EXTENDED);
    } while (records < 0 && errno == EINTR);
    position_ = 0;
    used_ = records > 0 ? static_cast<std::size_t>(records) : 0;
    if (records < 0)
        return Refill::failed;
    return records == 0 ? Refill::end : Refill::entries;
}

DirectoryReader::Next DirectoryReader::next(DirectoryEntry& entry) {
    if (used_ == 0)
        return Next::done;
    --used_;
    return readBulkRecord(buffer_.first(bufferBytes), position_, entry);
}

std::optional<DirectoryReader::Own> measureEntry(int parent, const char* name) {
    struct stat raw {};
    if (::fstatat(parent < 0 ? AT_FDCWD : parent, name, &raw, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return ownFrom(raw);
}

} // namespace orbel::platform
