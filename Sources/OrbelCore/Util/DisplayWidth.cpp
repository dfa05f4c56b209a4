#include "Util/DisplayWidth.h"

#include "Util/Characters.h"

#include <array>
#include <vector>

namespace orbel {

namespace {

using Range = CharacterRange;

/// Marks that are drawn over the character before them, joiners and variation selectors.
constexpr std::array overlaidCharacters{
    Range{0x300, 0x36F},    Range{0x483, 0x489},   Range{0x591, 0x5BD},   Range{0x5BF, 0x5BF},
    Range{0x5C1, 0x5C2},    Range{0x610, 0x61A},   Range{0x64B, 0x65F},   Range{0x670, 0x670},
    Range{0x6D6, 0x6DC},    Range{0x900, 0x902},   Range{0x93C, 0x93C},   Range{0x941, 0x948},
    Range{0x94D, 0x94D},    Range{0xE31, 0xE31},   Range{0xE34, 0xE3A},   Range{0xE47, 0xE4E},
    Range{0x1AB0, 0x1AFF},  Range{0x1DC0, 0x1DFF}, Range{0x200C, 0x200D}, Range{0x20D0, 0x20FF},
    Range{0x302A, 0x302D},  Range{0x3099, 0x309A}, Range{0xFE00, 0xFE0F}, Range{0xFE20, 0xFE2F},
    Range{0xE0100, 0xE01EF}};

/// East Asian characters and pictures (wide and full-width in Unicode's EastAsianWidth).
constexpr std::array wideCharacters{
    Range{0x1100, 0x115F},   Range{0x231A, 0x231B},   Range{0x23E9, 0x23EC},   Range{0x2614, 0x2615},
    Range{0x2648, 0x2653},   Range{0x26A1, 0x26A1},   Range{0x26BD, 0x26BE},   Range{0x2705, 0x2705},
    Range{0x2728, 0x2728},   Range{0x274C, 0x274C},   Range{0x2753, 0x2757},   Range{0x2B50, 0x2B50},
    Range{0x2E80, 0x303E},   Range{0x3041, 0x4DBF},   Range{0x4E00, 0xA4CF},   Range{0xA960, 0xA97F},
    Range{0xAC00, 0xD7A3},   Range{0xF900, 0xFAFF},   Range{0xFE10, 0xFE19},   Range{0xFE30, 0xFE6F},
    Range{0xFF01, 0xFF60},   Range{0xFFE0, 0xFFE6},   Range{0x17000, 0x18DFF}, Range{0x1B000, 0x1B2FF},
    Range{0x1F18E, 0x1F19A}, Range{0x1F200, 0x1F265}, Range{0x1F300, 0x1F320}, Range{0x1F32D, 0x1F5A4},
    Range{0x1F5FB, 0x1F64F}, Range{0x1F680, 0x1F6C5}, Range{0x1F900, 0x1F9FF}, Range{0x1FA70, 0x1FAFF},
    Range{0x20000, 0x3FFFD}};

std::size_t columnsOf(char32_t character) {
    if (character < 0x300)
        return 1;
    return isIn(overlaidCharacters, character) ? 0 : isIn(wideCharacters, character) ? 2 : 1;
}

/// A character with all that is drawn over it.
struct Cluster {
    std::string_view bytes;
    std::size_t columns;
};

std::vector<Cluster> clustersOf(std::string_view text) {
    std::vector<Cluster> clusters;
    forEachCharacter(text, [&](char32_t character, std::string_view own) {
        const auto columns = columnsOf(character);
        if (columns > 0 || clusters.empty())
            clusters.push_back({.bytes = own, .columns = columns});
        else
            clusters.back().bytes = {clusters.back().bytes.data(), clusters.back().bytes.size() + own.size()};
    });
    return clusters;
}

/// How many bytes of the clusters, in this order, fit.
std::size_t bytesThatFit(const auto& clusters, std::size_t columns) {
    std::size_t bytes = 0;
    for (const auto& cluster : clusters) {
        if (cluster.columns > columns)
            break;
        columns -= cluster.columns;
        bytes += cluster.bytes.size();
    }
    return bytes;
}

} // namespace

std::size_t displayWidth(std::string_view text) {
    std::size_t columns = 0;
    forEachCharacter(text, [&](char32_t character, std::string_view) { columns += columnsOf(character); });
    return columns;
}

std::string elidedInMiddle(std::string_view text, std::size_t columns, std::string_view mark) {
    if (displayWidth(text) <= columns)
        return std::string(text);
    const auto taken = displayWidth(mark);
    if (taken > columns)
        return {};
    auto clusters = clustersOf(text);
    const auto tail = (columns - taken) / 2;
    const auto head = bytesThatFit(clusters, columns - taken - tail);
    std::ranges::reverse(clusters);
    const auto kept = bytesThatFit(clusters, tail);
    return std::string(text.substr(0, head)) + std::string(mark)
           + std::string(text.substr(text.size() - kept));
}

} // namespace orbel
