#pragma once

#include "Scan/FileTree.h"

#include <cstdint>
#include <vector>

namespace orbel {

class SafetyPolicy;

/// In what kinds of place a node lies, itself included, as a set of bits. What is tidied elsewhere is left
/// alone in most of them.
struct PlaceMarks {
    std::uint8_t bits = 0;

    static const PlaceMarks gone;        ///< detached from the tree
    static const PlaceMarks whole;       ///< a package or a version-control folder: parts of one thing
    static const PlaceMarks managed;     ///< what a program fills and keeps in order, such as node_modules
    static const PlaceMarks hidden;      ///< a folder whose name begins with a dot
    static const PlaceMarks programData; ///< ~/Library and what is like it
    static const PlaceMarks shaped; ///< a folder that is one thing by what it holds, such as a repository
    static const PlaceMarks outsideHome; ///< not in the home folder, although that lies in the scanned root

    constexpr bool intersects(PlaceMarks other) const { return (bits & other.bits) != 0; }
    constexpr bool isNone() const { return bits == 0; }

    constexpr bool operator==(const PlaceMarks&) const = default;
};

inline constexpr PlaceMarks PlaceMarks::gone{1};
inline constexpr PlaceMarks PlaceMarks::whole{2};
inline constexpr PlaceMarks PlaceMarks::managed{4};
inline constexpr PlaceMarks PlaceMarks::hidden{8};
inline constexpr PlaceMarks PlaceMarks::programData{16};
inline constexpr PlaceMarks PlaceMarks::outsideHome{32};
inline constexpr PlaceMarks PlaceMarks::shaped{64};

constexpr PlaceMarks operator|(PlaceMarks left, PlaceMarks right) {
    return {static_cast<std::uint8_t>(left.bits | right.bits)};
}

/// Per node. Names count from the home folder on, for what is not in it from the top of the disk on, also
/// those of folders above the root. Nothing outside the home can be moved: where the root holds the home, the
/// rest is marked; a root elsewhere was asked for by name, so what is in it is not.
std::vector<PlaceMarks> placeMarks(const FileTree& tree, const SafetyPolicy& policy);

/// The same of a tree whose home is not known: names count from the top of the disk on, and nothing but the
/// tree is asked.
std::vector<PlaceMarks> placeMarks(const FileTree& tree);

} // namespace orbel
