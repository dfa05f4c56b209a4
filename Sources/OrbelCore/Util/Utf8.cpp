#include "Util/Utf8.h"

#include <algorithm>

namespace orbel {

namespace {

struct Sequence {
    std::size_t length = 1; ///< bytes of the character, or of the ill-formed part
    bool isValid = false;
};

/// Reads the character that `bytes`, which are not empty, begin with (Unicode, table 3-7).
Sequence firstSequence(std::string_view bytes) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80)
        return {.length = 1, .isValid = true};
    if (lead < 0xC2 || lead > 0xF4)
        return {};
    std::size_t length = 4;
    if (lead < 0xE0)
        length = 2;
    else if (lead < 0xF0)
        length = 3;
    // Only the second byte has a narrower range: it is what rules out overlong forms, surrogates and what
    // lies above U+10FFFF.
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
    if (lead == 0xE0)
        lowest = 0xA0;
    else if (lead == 0xED)
        highest = 0x9F;
    else if (lead == 0xF0)
        lowest = 0x90;
    else if (lead == 0xF4)
        highest = 0x8F;
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= bytes.size() || byteAt(i) < lowest || byteAt(i) > highest)
            return {.length = i, .isValid = false};
        lowest = 0x80;
        highest = 0xBF;
    }
    return {.length = length, .isValid = true};
}

} // namespace

bool isValidUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const Sequence next = firstSequence(bytes);
        if (!next.isValid)
            return false;
        bytes.remove_prefix(next.length);
    }
    return true;
}

std::string lossyUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Sequence next = firstSequence(bytes);
        text += next.isValid ? bytes.substr(0, next.length) : std::string_view("\xEF\xBF\xBD");
        bytes.remove_prefix(next.length);
    }
    return text;
}

std::size_t characterCount(std::string_view text) {
    const auto isFirstByte = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    return static_cast<std::size_t>(std::ranges::count_if(text, isFirstByte));
}

} // namespace orbel
