#include "Util/ShownText.h"

#include "Util/Characters.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <array>

namespace orbel {

namespace {

using Range = CharacterRange;

constexpr std::array hiddenCharacters{Range{0x00, 0x1F},     Range{0x7F, 0x9F},     Range{0xAD, 0xAD},
                                      Range{0x61C, 0x61C},   Range{0x180E, 0x180E}, Range{0x200B, 0x200B},
                                      Range{0x200E, 0x200F}, Range{0x2028, 0x202E}, Range{0x2060, 0x206F},
                                      Range{0x3164, 0x3164}, Range{0xFEFF, 0xFEFF}, Range{0xFFA0, 0xFFA0},
                                      Range{0xFFF9, 0xFFFB}};

/// The blocks of right-to-left scripts (Unicode's DerivedBidiClass).
constexpr std::array rightToLeftBlocks{Range{0x590, 0x8FF}, Range{0xFB1D, 0xFDFF}, Range{0xFE70, 0xFEFE},
                                       Range{0x10800, 0x10FFF}, Range{0x1E800, 0x1EFFF}};

/// At least four digits, as Unicode writes a character's number.
std::string hexadecimal(char32_t character) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string number;
    for (int shift = character > 0xFFFF ? 16 : 12; shift >= 0; shift -= 4)
        number += digits[character >> static_cast<unsigned>(shift) & 0xFU];
    return number;
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

} // namespace

std::string visibleText(std::string_view bytes) {
    const auto isPlain = [](char byte) { return byte >= ' ' && byte < '\x7F'; };
    if (std::ranges::all_of(bytes, isPlain))
        return std::string(bytes);
    const auto valid = lossyUtf8(bytes);
    std::string visible;
    visible.reserve(valid.size());
    forEachCharacter(valid, [&](char32_t character, std::string_view own) {
        if (isIn(hiddenCharacters, character))
            visible += "[U+" + hexadecimal(character) + "]";
        else
            visible += own;
    });
    return visible;
}

std::string isolatedText(std::string_view visible) {
    bool isRightToLeft = false;
    if (!isAscii(visible))
        forEachCharacter(visible, [&](char32_t character, std::string_view) {
            isRightToLeft = isRightToLeft || isIn(rightToLeftBlocks, character);
        });
    if (!isRightToLeft)
        return std::string(visible);
    const bool isPath = visible.find('/') != std::string_view::npos;
    std::string isolated = isPath ? "\u2066" : "\u2068";
    for (const char byte : visible) {
        isolated += byte;
        if (byte == '/')
            isolated += "\u200E";
    }
    return isolated + "\u2069";
}

} // namespace orbel
