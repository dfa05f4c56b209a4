#include "Platform/macOS/Portable/BulkRecords.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace orbel::platform {

namespace {

/// Takes one value after the other out of a record. Once one does not fit, this and all later ones
/// read as zero.
class Fields {
public:
    explicit Fields(std::span<const std::byte> record) : record_(record) {}

    template <class Value>
    Value take() {
        static_assert(std::is_trivially_copyable_v<Value>);
        Value value{};
        if (record_.size() - position_ < sizeof(Value)) {
            complete_ = false;
            position_ = record_.size();
            return value;
        }
        std::memcpy(&value, record_.data() + position_, sizeof(Value));
        position_ += sizeof(Value);
        return value;
    }

    bool complete() const { return complete_; }
    std::size_t position() const { return position_; }

private:
    std::span<const std::byte> record_;
    std::size_t position_ = 0;
    bool complete_ = true;
};

struct Header {
    std::uint32_t length;
    std::uint32_t common;
    std::uint32_t volume;
    std::uint32_t directory;
    std::uint32_t file;
    std::uint32_t extended;
};

struct NameReference {
    std::int32_t offset;
    std::uint32_t length;
};

struct Time {
    std::int64_t seconds;
    std::int64_t nanoseconds; // never negative, so the seconds are rounded down already
};

using FinderInfo = std::array<std::uint8_t, 32>;

FileType typeOf(std::uint32_t vnodeType) {
    switch (vnodeType) { // enum vtype
    case 1:
        return FileType::regular;
    case 2:
        return FileType::directory;
    case 5:
        return FileType::symbolicLink;
    default:
        return FileType::other;
    }
}

bool hasAliasFlag(const FinderInfo& info) {
    return (info[8] & 0x80U) != 0;
} // the top bit of a big-endian 16-bit word

std::uint64_t sizeFrom(std::int64_t raw) {
    return static_cast<std::uint64_t>(std::max<std::int64_t>(raw, 0));
}

/// The name that the reference at `start` points at; empty when it is not inside the record, is not closed by
/// a zero byte, or is one that would lead out of the directory when it is opened relative to it.
std::string_view nameAt(std::span<const std::byte> record, std::size_t start, NameReference reference) {
    const auto from = static_cast<std::int64_t>(start) + reference.offset;
    const auto size = static_cast<std::int64_t>(record.size());
    if (from < static_cast<std::int64_t>(start + sizeof reference) || from > size
        || static_cast<std::int64_t>(reference.length) > size - from)
        return {};
    const std::string_view field(reinterpret_cast<const char*>(record.data()) + from, reference.length);
    const auto end = field.find('\0');
    if (end == std::string_view::npos)
        return {};
    const auto name = field.substr(0, end);
    return name == "." || name == ".." || name.find('/') != std::string_view::npos ? std::string_view{}
                                                                                   : name;
}

bool holdsOnlyWhatWasAsked(const Header& header) {
    return (header.common & ~bulk::commonGroup) == 0 && (header.volume & ~bulk::volumeGroup) == 0
           && (header.directory & ~bulk::directoryGroup) == 0 && (header.file & ~bulk::fileGroup) == 0
           && (header.extended & ~bulk::extendedGroup) == 0;
}

/// Everything behind the name, in the order of the bits. False when the record ends too early.
bool readAttributes(const Header& header, Fields& fields, EntryAttributes& attributes) {
    FinderInfo info{};
    if ((header.common & bulk::objectType) != 0)
        attributes.type = typeOf(fields.take<std::uint32_t>());
    if ((header.common & bulk::modificationTime) != 0)
        attributes.modifiedSeconds = fields.take<Time>().seconds;
    if ((header.common & bulk::finderInfo) != 0)
        info = fields.take<FinderInfo>();
    if ((header.common & bulk::fileFlags) != 0)
        attributes.isDataless = (fields.take<std::uint32_t>() & bulk::datalessFlag) != 0;
    if ((header.common & bulk::fileId) != 0)
        attributes.inode = fields.take<std::uint64_t>();
    if ((header.file & bulk::linkCount) != 0)
        attributes.linkCount = fields.take<std::uint32_t>();
    if ((header.file & bulk::totalSize) != 0)
        attributes.logicalBytes = sizeFrom(fields.take<std::int64_t>());
    if ((header.file & bulk::allocatedSize) != 0)
        attributes.allocatedBytes = sizeFrom(fields.take<std::int64_t>());
    if ((header.extended & bulk::extendedFlags) != 0)
        attributes.mayShareBlocks = (fields.take<std::uint64_t>() & bulk::sharedBlocksFlags) != 0;
    attributes.isAlias = hasAliasFlag(info) && attributes.type != FileType::directory
                         && attributes.type != FileType::symbolicLink;
    return fields.complete();
}

} // namespace

DirectoryReader::Next readBulkRecord(std::span<const std::byte> batch, std::size_t& position,
                                     DirectoryEntry& entry) {
    static_assert(std::endian::native == std::endian::little,
                  "the numbers are those of the machine that asked");
    using Next = DirectoryReader::Next;
    entry = {};
    const auto rest = batch.subspan(std::min(position, batch.size()));
    Fields fields(rest);
    const auto header = fields.take<Header>();
    if (!fields.complete() || header.length < sizeof(Header) || header.length > rest.size()) {
        position = batch.size();
        return Next::unreadable;
    }
    position += header.length;

    const auto record = rest.first(header.length);
    fields = Fields(record);
    static_cast<void>(fields.take<Header>());
    const auto error =
        (header.common & bulk::entryError) != 0 ? fields.take<std::uint32_t>() : std::uint32_t{0};
    if ((header.common & bulk::name) != 0) {
        const auto start = fields.position();
        const auto reference = fields.take<NameReference>();
        if (fields.complete())
            entry.name = nameAt(record, start, reference);
    }
    if (error != 0 || entry.name.empty() || !holdsOnlyWhatWasAsked(header))
        return Next::unreadable;
    EntryAttributes attributes;
    if (!readAttributes(header, fields, attributes))
        return Next::unreadable;
    entry.attributes = attributes;
    entry.isMeasured = true;
    return Next::entry;
}

} // namespace orbel::platform
