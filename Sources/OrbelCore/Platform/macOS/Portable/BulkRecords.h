#pragma once

#include "Platform/DirectoryReader.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace orbel::platform {

/// The packed records in which macOS lists a directory (getattrlistbulk), read without any header of that
/// system so that this compiles and is tested everywhere. A record is its length (32 bits), five 32-bit masks
/// that say which attributes it holds, one per group, and then those attributes: the entry's error first,
/// everything else in the order of its bits. A number is four or eight bytes and begins at a multiple of
/// four, so it is copied out, never cast. The name is kept apart: a reference holds its offset, counted from
/// the reference itself, and its length.
namespace bulk {

// The system's numbers, which DirectoryReader.cpp compares with <sys/attr.h> where that exists.
inline constexpr std::uint32_t name = 0x1;
inline constexpr std::uint32_t objectType = 0x8;
inline constexpr std::uint32_t modificationTime = 0x400;
inline constexpr std::uint32_t finderInfo = 0x4000;
inline constexpr std::uint32_t fileFlags = 0x40000;
inline constexpr std::uint32_t fileId = 0x2000000;
inline constexpr std::uint32_t entryError = 0x20000000;
inline constexpr std::uint32_t returnedAttributes = 0x80000000;
inline constexpr std::uint32_t linkCount = 0x1;
inline constexpr std::uint32_t totalSize = 0x2;
inline constexpr std::uint32_t allocatedSize = 0x4;
inline constexpr std::uint32_t extendedFlags = 0x200;

/// What a listing asks for, group by group; a record that holds anything else cannot be read. A folder's own
/// sizes are never asked for. The last group holds extended common attributes, as FSOPT_ATTR_CMN_EXTENDED
/// makes it.
inline constexpr std::uint32_t commonGroup =
    name | objectType | modificationTime | finderInfo | fileFlags | fileId | entryError | returnedAttributes;
inline constexpr std::uint32_t volumeGroup = 0;
inline constexpr std::uint32_t directoryGroup = 0;
inline constexpr std::uint32_t fileGroup = linkCount | totalSize | allocatedSize;
inline constexpr std::uint32_t extendedGroup = extendedFlags;

inline constexpr std::uint32_t datalessFlag = 0x40000000; ///< SF_DATALESS
/// EF_MAY_SHARE_BLOCKS and EF_SHARES_ALL_BLOCKS
inline constexpr std::uint64_t sharedBlocksFlags = 0x1 | 0x40;

} // namespace bulk

/// Reads the record of `batch` that begins at `position` into `entry` and moves `position` behind it. `batch`
/// must outlive the entry's name, which stays where it is and ends in a zero byte that is not part of it.
///
/// Gives `unreadable` for an entry that came with an error or without a usable name, and for a record that is
/// not of this form or reaches beyond the batch; only the name, when there is a usable one, is filled then.
/// Once the length of a record makes no sense, the beginning of the next one is not known either: `position`
/// is then the end of the batch, from where every call gives `unreadable`. Attributes that were not returned
/// keep the defaults of EntryAttributes; negative sizes read as 0. Never gives `done`: the system tells the
/// number of records.
DirectoryReader::Next readBulkRecord(std::span<const std::byte> batch, std::size_t& position,
                                     DirectoryEntry& entry);

} // namespace orbel::platform
