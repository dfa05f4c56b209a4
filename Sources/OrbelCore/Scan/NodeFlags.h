#pragma once

#include <cstdint>

namespace orbel {

/// What the scan found out about one node, as a set of bits in one byte.
struct NodeFlags {
    std::uint8_t rawValue = 0;

    static const NodeFlags folder;     ///< a directory, packages too
    static const NodeFlags package;    ///< a directory that counts as one item by its name's extension
    static const NodeFlags symlink;    ///< a symbolic link, measured as the link itself, never followed
    static const NodeFlags unreadable; ///< the entry, or the directory's listing, could not be read
    static const NodeFlags dataless;   ///< a cloud file whose data is not on this disk
    /// A hard link whose bytes another member of its group carries.
    static const NodeFlags linkCountedElsewhere;
    static const NodeFlags mayShareBlocks; ///< its blocks may belong to another file too
    /// Where another volume is mounted, or what the scan was to leave out (FileTree::isExcluded): it is not
    /// descended into and weighs nothing.
    static const NodeFlags otherVolume;

    /// Whether every flag of `other` is set here.
    constexpr bool contains(NodeFlags other) const { return (rawValue & other.rawValue) == other.rawValue; }
    /// Whether any flag of `other` is set here.
    constexpr bool intersects(NodeFlags other) const { return (rawValue & other.rawValue) != 0; }

    constexpr NodeFlags with(NodeFlags other) const {
        return {static_cast<std::uint8_t>(rawValue | other.rawValue)};
    }
    constexpr NodeFlags without(NodeFlags other) const {
        return {static_cast<std::uint8_t>(rawValue & ~other.rawValue)};
    }

    constexpr bool operator==(const NodeFlags&) const = default;
};

inline constexpr NodeFlags NodeFlags::folder{1};
inline constexpr NodeFlags NodeFlags::package{2};
inline constexpr NodeFlags NodeFlags::symlink{4};
inline constexpr NodeFlags NodeFlags::unreadable{8};
inline constexpr NodeFlags NodeFlags::dataless{16};
inline constexpr NodeFlags NodeFlags::linkCountedElsewhere{32};
inline constexpr NodeFlags NodeFlags::mayShareBlocks{64};
inline constexpr NodeFlags NodeFlags::otherVolume{128};

constexpr NodeFlags operator|(NodeFlags left, NodeFlags right) {
    return left.with(right);
}

} // namespace orbel
