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
    static const PlaceMarks system;      ///< one of the policy's system roots

    constexpr bool intersects(PlaceMarks other) const { return (bits & other.bits) != 0; }
    constexpr bool isNone() const { return bits == 0; }

    constexpr bool operator==(const PlaceMarks&) const = default;
};

inline constexpr PlaceMarks PlaceMarks::gone{1};
inline constexpr PlaceMarks PlaceMarks::whole{2};
inline constexpr PlaceMarks PlaceMarks::managed{4};
inline constexpr PlaceMarks PlaceMarks::hidden{8};
inline constexpr PlaceMarks PlaceMarks::programData{16};
inline constexpr PlaceMarks PlaceMarks::system{32};

constexpr PlaceMarks operator|(PlaceMarks left, PlaceMarks right) {
    return {static_cast<std::uint8_t>(left.bits | right.bits)};
}

/// Per node. A root in the home folder counts with all folders between the two, any other with all above it;
/// only that a root itself lies in a place of the system does not count, for then that is what was asked for.
std::vector<PlaceMarks> placeMarks(const FileTree& tree, const SafetyPolicy& policy);

} // namespace orbel
