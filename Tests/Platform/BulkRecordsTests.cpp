#include "Platform/macOS/Portable/BulkRecords.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {
namespace {

using Next = DirectoryReader::Next;

/// One record as the kernel packs it: what is added last comes last, and the name behind everything else.
class Record {
public:
    Record& common(std::uint32_t bits) { return mask(0, bits); }
    Record& directory(std::uint32_t bits) { return mask(2, bits); }
    Record& file(std::uint32_t bits) { return mask(3, bits); }
    Record& extended(std::uint32_t bits) { return mask(4, bits); }

    template <class Value>
    Record& value(Value value) {
        const auto* bytes = reinterpret_cast<const std::byte*>(&value);
        fixed_.insert(fixed_.end(), bytes, bytes + sizeof value);
        return *this;
    }

    Record& error(std::uint32_t number) { return common(bulk::entryError).value(number); }

    /// A reference to a name that is laid down behind the fields, closed by a zero byte as the kernel does
    /// it.
    Record& name(std::string_view text) {
        name_.assign(text);
        name_.push_back('\0');
        common(bulk::name);
        nameReference_ = fixed_.size();
        return value(std::int32_t{0}).value(static_cast<std::uint32_t>(name_.size()));
    }

    /// A reference that says what it likes, to no name at all.
    Record& nameReference(std::int32_t offset, std::uint32_t length) {
        return common(bulk::name).value(offset).value(length);
    }

    Record& type(std::uint32_t vnodeType) { return common(bulk::objectType).value(vnodeType); }
    Record& modified(std::int64_t seconds, std::int64_t nanos) {
        return common(bulk::modificationTime).value(seconds).value(nanos);
    }
    Record& finderFlags(std::uint16_t flags) {
        std::array<std::uint8_t, 32> info{};
        info[8] = static_cast<std::uint8_t>(flags >> 8U);
        info[9] = static_cast<std::uint8_t>(flags & 0xFFU);
        return common(bulk::finderInfo).value(info);
    }
    Record& flags(std::uint32_t fileFlags) { return common(bulk::fileFlags).value(fileFlags); }
    Record& inode(std::uint64_t number) { return common(bulk::fileId).value(number); }
    Record& links(std::uint32_t count) { return file(bulk::linkCount).value(count); }
    Record& sizes(std::int64_t total, std::int64_t allocated) {
        return file(bulk::totalSize | bulk::allocatedSize).value(total).value(allocated);
    }
    Record& extendedFlags(std::uint64_t bits) { return extended(bulk::extendedFlags).value(bits); }

    /// The bytes, filled up to a multiple of `alignment`.
    std::vector<std::byte> bytes(std::size_t alignment = 8) const {
        std::vector<std::byte> all(headerBytes);
        all.insert(all.end(), fixed_.begin(), fixed_.end());
        if (!name_.empty()) {
            const auto reference = headerBytes + nameReference_;
            put(all, reference, static_cast<std::int32_t>(all.size() - reference));
            const auto* text = reinterpret_cast<const std::byte*>(name_.data());
            all.insert(all.end(), text, text + name_.size());
        }
        all.resize((all.size() + alignment - 1) / alignment * alignment);
        put(all, 0, static_cast<std::uint32_t>(all.size()));
        for (std::size_t group = 0; group < masks_.size(); ++group)
            put(all, 4 + 4 * group, masks_[group]);
        return all;
    }

    template <class Value>
    static void put(std::vector<std::byte>& bytes, std::size_t position, Value value) {
        std::memcpy(bytes.data() + position, &value, sizeof value);
    }

private:
    static constexpr std::size_t headerBytes = 24;

    Record& mask(std::size_t group, std::uint32_t bits) {
        masks_[group] |= bits;
        return *this;
    }

    std::array<std::uint32_t, 5> masks_{bulk::returnedAttributes};
    std::vector<std::byte> fixed_;
    std::string name_;
    std::size_t nameReference_ = 0;
};

Record completeFile(std::string_view name) {
    Record record;
    record.name(name)
        .type(1)
        .modified(1'700'000'000, 999'999'999)
        .finderFlags(0)
        .flags(0)
        .inode(0x1'0000'0007);
    record.links(3).sizes(5'000'000'000, 4'096).extendedFlags(0);
    return record;
}

struct Read {
    Next next;
    DirectoryEntry entry;
    std::size_t position;
};

Read read(std::span<const std::byte> batch, std::size_t position = 0) {
    Read result{.next = Next::done, .entry = {}, .position = position};
    result.next = readBulkRecord(batch, result.position, result.entry);
    return result;
}

Next resultOf(const Record& record) {
    const auto bytes = record.bytes();
    return read(bytes).next;
}

EntryAttributes attributesOf(const Record& record) {
    const auto bytes = record.bytes();
    const auto result = read(bytes);
    EXPECT_EQ(result.next, Next::entry);
    EXPECT_TRUE(result.entry.isMeasured);
    return result.entry.attributes;
}

std::vector<std::byte> joined(const std::vector<std::vector<std::byte>>& records) {
    std::vector<std::byte> all;
    for (const auto& record : records)
        all.insert(all.end(), record.begin(), record.end());
    return all;
}

TEST(BulkRecords, AFileWithEverythingReturned) {
    const auto bytes = completeFile("report.pdf").bytes();
    const auto result = read(bytes);
    ASSERT_EQ(result.next, Next::entry);
    EXPECT_EQ(result.position, bytes.size());
    const auto& entry = result.entry;
    EXPECT_EQ(entry.name, "report.pdf");
    EXPECT_EQ(entry.name.data()[entry.name.size()], '\0');
    EXPECT_TRUE(entry.isMeasured);
    EXPECT_FALSE(entry.place.has_value());
    EXPECT_EQ(entry.attributes.type, FileType::regular);
    EXPECT_EQ(entry.attributes.modifiedSeconds, 1'700'000'000);
    EXPECT_EQ(entry.attributes.inode, 0x1'0000'0007U);
    EXPECT_EQ(entry.attributes.linkCount, 3U);
    EXPECT_EQ(entry.attributes.logicalBytes, 5'000'000'000U);
    EXPECT_EQ(entry.attributes.allocatedBytes, 4'096U);
    EXPECT_FALSE(entry.attributes.isDataless || entry.attributes.isAlias || entry.attributes.mayShareBlocks);
}

TEST(BulkRecords, WhatWasNotReturnedTakesItsDefaultAndDoesNotShiftTheRest) {
    const auto folder = attributesOf(Record{}.name("Folder").type(2).inode(7));
    EXPECT_EQ(folder.type, FileType::directory);
    EXPECT_EQ(folder.inode, 7U);
    EXPECT_EQ(folder.linkCount, 1U);
    EXPECT_EQ(folder.allocatedBytes, 0U);

    const auto bare = attributesOf(Record{}.name("bare"));
    EXPECT_EQ(bare.type, FileType::other);
    EXPECT_EQ(bare.modifiedSeconds, 0);
    EXPECT_EQ(bare.linkCount, 1U);

    Record sized;
    sized.error(0).name("sized").modified(-61, 5).file(bulk::allocatedSize).value(std::int64_t{8192});
    const auto attributes = attributesOf(sized.extendedFlags(0x1));
    EXPECT_EQ(attributes.modifiedSeconds, -61);
    EXPECT_EQ(attributes.allocatedBytes, 8'192U);
    EXPECT_EQ(attributes.logicalBytes, 0U);
    EXPECT_TRUE(attributes.mayShareBlocks);
}

TEST(BulkRecords, TypesAndFlagsKeepTheirMeaning) {
    EXPECT_EQ(attributesOf(Record{}.name("link").type(5)).type, FileType::symbolicLink);
    EXPECT_EQ(attributesOf(Record{}.name("fifo").type(7)).type, FileType::other);
    EXPECT_TRUE(attributesOf(Record{}.name("cloud").type(1).flags(0x40000000)).isDataless);
    EXPECT_FALSE(attributesOf(Record{}.name("restricted").type(1).flags(0x80000)).isDataless);
    EXPECT_TRUE(attributesOf(Record{}.name("clone").type(1).extendedFlags(0x40)).mayShareBlocks);
    EXPECT_FALSE(attributesOf(Record{}.name("sparse").type(1).extendedFlags(0x10)).mayShareBlocks);

    EXPECT_TRUE(attributesOf(Record{}.name("alias").type(1).finderFlags(0x8000)).isAlias);
    EXPECT_FALSE(attributesOf(Record{}.name("invisible").type(1).finderFlags(0x4000)).isAlias);
    EXPECT_FALSE(attributesOf(Record{}.name("folder").type(2).finderFlags(0x8000)).isAlias);
    EXPECT_FALSE(attributesOf(Record{}.name("link").type(5).finderFlags(0x8000)).isAlias);
}

TEST(BulkRecords, NegativeSizesReadAsZero) {
    const auto attributes = attributesOf(Record{}.name("odd").type(1).sizes(-1, -4096));
    EXPECT_EQ(attributes.logicalBytes, 0U);
    EXPECT_EQ(attributes.allocatedBytes, 0U);
}

TEST(BulkRecords, AnEntryWithAnErrorIsUnreadableButNamed) {
    const auto bytes = joined({Record{}.error(13).name("locked").bytes(), completeFile("next").bytes()});
    const auto first = read(bytes);
    EXPECT_EQ(first.next, Next::unreadable);
    EXPECT_EQ(first.entry.name, "locked");
    EXPECT_FALSE(first.entry.isMeasured);
    EXPECT_EQ(read(bytes, first.position).entry.name, "next");

    EXPECT_EQ(resultOf(Record{}.error(2)), Next::unreadable);
    EXPECT_EQ(resultOf(Record{}.error(0).name("fine").type(1)), Next::entry);
}

TEST(BulkRecords, NamesThatAreMissingOrLeadElsewhereAreRefused) {
    EXPECT_EQ(resultOf(Record{}.type(1).inode(9)), Next::unreadable);
    for (const std::string_view name : {"", ".", "..", "a/b", "/", "../escape"})
        EXPECT_EQ(resultOf(Record{}.name(name).type(1)), Next::unreadable) << name;
    for (const std::string_view name : {"...", ".hidden", "a:b", "\xFF\xFE", "new\nline"}) {
        const auto bytes = Record{}.name(name).type(1).bytes();
        EXPECT_EQ(read(bytes).entry.name, name);
    }
}

TEST(BulkRecords, NameReferencesOutsideTheRecordAreRefused) {
    // The reference of such a record is its bytes 24 to 31, and 40 bytes are all there is.
    const auto result = [](std::int32_t offset, std::uint32_t length) {
        return resultOf(Record{}.nameReference(offset, length).value(std::uint64_t{0x0041414141414141}));
    };
    EXPECT_EQ(result(8, 8), Next::entry) << "seven letters and the closing zero";
    EXPECT_EQ(result(-4, 8), Next::unreadable);
    EXPECT_EQ(result(0, 8), Next::unreadable);
    EXPECT_EQ(result(9, 8), Next::unreadable);
    EXPECT_EQ(result(16, 1), Next::unreadable);
    EXPECT_EQ(result(8, 7), Next::unreadable);
    EXPECT_EQ(result(8, 0), Next::unreadable);
    EXPECT_EQ(result(8, 0xFFFFFFFF), Next::unreadable);
    EXPECT_EQ(result(0x7FFFFFFF, 0x7FFFFFFF), Next::unreadable);
    EXPECT_EQ(result(-0x7FFFFFFF, 0xFFFFFFFF), Next::unreadable);
}

TEST(BulkRecords, AttributesThatNobodyAskedForMakeTheLayoutUnknown) {
    EXPECT_EQ(resultOf(completeFile("owner").common(0x8000)), Next::unreadable);
    EXPECT_EQ(resultOf(completeFile("device").file(0x20)), Next::unreadable);
    EXPECT_EQ(resultOf(completeFile("entries").directory(0x2)), Next::unreadable);
    EXPECT_EQ(resultOf(completeFile("private").extended(0x8)), Next::unreadable);
}

TEST(BulkRecords, SeveralRecordsFollowOneAnotherWhateverTheirAlignment) {
    for (const std::size_t alignment : {1U, 2U, 4U, 8U}) {
        const auto batch = joined({completeFile("a").bytes(alignment), completeFile("be").bytes(alignment),
                                   completeFile("see").bytes(alignment)});
        std::size_t position = 0;
        DirectoryEntry entry;
        for (const std::string_view name : {"a", "be", "see"}) {
            EXPECT_EQ(readBulkRecord(batch, position, entry), Next::entry);
            EXPECT_EQ(entry.name, name);
            EXPECT_EQ(entry.attributes.logicalBytes, 5'000'000'000U);
        }
        EXPECT_EQ(position, batch.size());
    }
}

TEST(BulkRecords, AnImpossibleLengthEndsTheBatch) {
    const auto good = completeFile("good").bytes();
    const auto size = static_cast<std::uint32_t>(good.size());
    for (const std::uint32_t length : {0U, 4U, 23U, size + 1, size + 8, 0x80000000U, 0xFFFFFFFFU}) {
        auto last = completeFile("last").bytes();
        Record::put(last, 0, length);
        const auto batch = joined({good, last});
        auto result = read(batch, good.size());
        EXPECT_EQ(result.next, Next::unreadable) << length;
        EXPECT_EQ(result.position, batch.size()) << length;
        result = read(batch, result.position);
        EXPECT_EQ(result.next, Next::unreadable) << "whatever record count is still claimed";
    }
    EXPECT_EQ(read(good, good.size() + 100).next, Next::unreadable);
    EXPECT_EQ(read({}).next, Next::unreadable);
}

TEST(BulkRecords, NoCutOfARecordReadsAsAnEntryOrBeyondItsEnd) {
    const auto whole = completeFile("name").bytes(1);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A copy of exactly this size, so that a sanitizer sees a read behind it.
        const std::vector<std::byte> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(read(cut).next, Next::unreadable) << size;

        auto shortened = cut;
        if (size >= 4)
            Record::put(shortened, 0, static_cast<std::uint32_t>(size));
        const auto result = read(shortened);
        EXPECT_EQ(result.next, Next::unreadable) << size;
        EXPECT_EQ(result.position, size);
    }
}

TEST(BulkRecords, AnUnreadableEntryKeepsNothingOfTheOneBefore) {
    const auto bytes = joined({completeFile("before").bytes(), Record{}.error(1).bytes()});
    std::size_t position = 0;
    DirectoryEntry entry;
    ASSERT_EQ(readBulkRecord(bytes, position, entry), Next::entry);
    ASSERT_EQ(readBulkRecord(bytes, position, entry), Next::unreadable);
    EXPECT_TRUE(entry.name.empty());
    EXPECT_FALSE(entry.isMeasured);
    EXPECT_EQ(entry.attributes.allocatedBytes, 0U);
}

} // namespace
} // namespace orbel::platform
