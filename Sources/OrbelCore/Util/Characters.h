#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace orbel {

/// The characters from `first` to `last`, both included.
struct CharacterRange {
    char32_t first;
    char32_t last;
};

/// Whether one of the ranges holds the character.
bool isIn(const auto& ranges, char32_t character) {
    return std::ranges::any_of(
        ranges, [&](CharacterRange range) { return character >= range.first && character <= range.last; });
}

/// Calls `use` with each character of valid UTF-8 and its bytes.
void forEachCharacter(std::string_view text, const auto& use) {
    while (!text.empty()) {
        const auto lead = static_cast<unsigned char>(text.front());
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
        for (const char byte : text.substr(1, length - 1))
            character = character << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
        use(character, text.substr(0, length));
        text.remove_prefix(length);
    }
}

} // namespace orbel
