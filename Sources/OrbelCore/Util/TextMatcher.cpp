#include "Util/TextMatcher.h"

#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace orbel {

namespace {

constexpr unsigned char firstBeyondAscii = 0x80;

/// Upper-case letters from `first` to `last`, every `step`-th, each `distance` before its lower-case letter.
struct CaseRange {
    char32_t first;
    char32_t last;
    int step;
    int distance;
};

/// In ascending order. No letter beyond ASCII folds to one within, on which the search for ASCII text relies.
constexpr std::array caseRanges{
    CaseRange{0xC0, 0xD6, 1, 32},     CaseRange{0xD8, 0xDE, 1, 32},    CaseRange{0x100, 0x12E, 2, 1},
    CaseRange{0x132, 0x136, 2, 1},    CaseRange{0x139, 0x147, 2, 1},   CaseRange{0x14A, 0x176, 2, 1},
    CaseRange{0x178, 0x178, 1, -121}, CaseRange{0x179, 0x17D, 2, 1},   CaseRange{0x1CD, 0x1DB, 2, 1},
    CaseRange{0x1DE, 0x1EE, 2, 1},    CaseRange{0x1F8, 0x21E, 2, 1},   CaseRange{0x222, 0x232, 2, 1},
    CaseRange{0x386, 0x386, 1, 38},   CaseRange{0x388, 0x38A, 1, 37},  CaseRange{0x38C, 0x38C, 1, 64},
    CaseRange{0x38E, 0x38F, 1, 63},   CaseRange{0x391, 0x3A1, 1, 32},  CaseRange{0x3A3, 0x3AB, 1, 32},
    CaseRange{0x3C2, 0x3C2, 1, 1},    CaseRange{0x400, 0x40F, 1, 80},  CaseRange{0x410, 0x42F, 1, 32},
    CaseRange{0x460, 0x480, 2, 1},    CaseRange{0x48A, 0x4BE, 2, 1},   CaseRange{0x4C0, 0x4C0, 1, 15},
    CaseRange{0x4C1, 0x4CD, 2, 1},    CaseRange{0x4D0, 0x52E, 2, 1},   CaseRange{0x531, 0x556, 1, 48},
    CaseRange{0x1E00, 0x1E94, 2, 1},  CaseRange{0x1EA0, 0x1EFE, 2, 1}, CaseRange{0xFF21, 0xFF3A, 1, 32},
};

char32_t lowerCase(char32_t letter) {
    const auto* const range = std::ranges::lower_bound(caseRanges, letter, {}, &CaseRange::last);
    if (range == caseRanges.end() || letter < range->first
        || (letter - range->first) % static_cast<char32_t>(range->step) != 0)
        return letter;
    return static_cast<char32_t>(static_cast<std::int32_t>(letter) + range->distance);
}

constexpr unsigned char asciiLowerCase(unsigned char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}

/// A byte of each value, in lower case where it is an ASCII letter.
constexpr auto folding = [] {
    std::array<unsigned char, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = asciiLowerCase(static_cast<unsigned char>(i));
    return table;
}();

unsigned char foldedByte(char byte) {
    return folding[static_cast<unsigned char>(byte)];
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == firstBeyondAscii;
}

/// All letters with two cases lie below U+10000, where a character has two or three bytes.
char32_t decoded(std::string_view character) {
    const auto bits = [&](std::size_t i, unsigned mask) {
        return char32_t{static_cast<unsigned char>(character[i]) & mask};
    };
    return character.size() == 2 ? bits(0, 0x1F) << 6U | bits(1, 0x3F)
                                 : bits(0, 0x0F) << 12U | bits(1, 0x3F) << 6U | bits(2, 0x3F);
}

void append(std::string& text, char32_t letter) {
    constexpr char32_t firstOfThreeBytes = 0x800;
    if (letter < firstOfThreeBytes) {
        text += static_cast<char>(0xC0U | letter >> 6U);
    } else {
        text += static_cast<char>(0xE0U | letter >> 12U);
        text += static_cast<char>(firstBeyondAscii | (letter >> 6U & 0x3FU));
    }
    text += static_cast<char>(firstBeyondAscii | (letter & 0x3FU));
}

/// The bytes of the letter that the text begins with, when it may be one of two cases beyond ASCII; else 1.
std::size_t letterLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    std::size_t length = 1;
    if (lead >= 0xC3 && lead < 0xE0)
        length = 2;
    else if (lead == 0xE1 || lead == 0xEF)
        length = 3;
    const bool isWhole =
        text.size() >= length && std::ranges::all_of(text.substr(1, length - 1), isContinuation);
    return isWhole ? length : 1;
}

} // namespace

std::string caseFolded(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    while (!text.empty()) {
        const auto length = letterLength(text);
        if (length == 1)
            folded += static_cast<char>(foldedByte(text.front()));
        else
            append(folded, lowerCase(decoded(text.substr(0, length))));
        text.remove_prefix(length);
    }
    return folded;
}

namespace {

bool hasOnlyAscii(std::string_view text) {
    return std::ranges::all_of(text,
                               [](char byte) { return static_cast<unsigned char>(byte) < firstBeyondAscii; });
}

} // namespace

TextMatcher::TextMatcher(std::string_view text)
    : wanted_(caseFolded(text)), isAscii_(hasOnlyAscii(wanted_)) {}

bool TextMatcher::isIn(std::string_view bytes) const {
    // Most names are plain, and have nothing to fold.
    if (!isAscii_)
        return !hasOnlyAscii(bytes) && caseFolded(bytes).find(wanted_) != std::string::npos;
    if (wanted_.empty())
        return true;
    // By hand: millions of short names are asked, and most differ in the first letter already.
    const auto first = static_cast<unsigned char>(wanted_.front());
    for (std::size_t at = 0; at + wanted_.size() <= bytes.size(); ++at) {
        if (foldedByte(bytes[at]) == first
            && std::ranges::equal(
                wanted_, bytes.substr(at, wanted_.size()), {},
                [](char byte) { return static_cast<unsigned char>(byte); }, foldedByte))
            return true;
    }
    return false;
}

bool TextMatcher::isInPath(std::string_view path, std::string_view home) const {
    return wanted_.empty() || isIn(tildePath(path, home));
}

} // namespace orbel
