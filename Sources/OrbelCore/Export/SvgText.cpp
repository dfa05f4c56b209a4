#include "Export/SvgText.h"

#include "Util/Utf8.h"

namespace orbel {

namespace {

constexpr std::string_view ellipsis = "…";

/// The bytes of the first character of valid UTF-8.
std::string_view firstCharacter(std::string_view text) {
    const auto byte = static_cast<unsigned char>(text.front());
    return text.substr(0, byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4);
}

/// In parts of the font's size.
double advance(std::string_view character) {
    if (character.size() == 1) {
        const char c = character.front();
        if (std::string_view("ijl.,:;'|!` ").contains(c))
            return 0.27;
        if (std::string_view("ftrIJ()[]{}/\\-\"*").contains(c))
            return 0.38;
        if (std::string_view("mwMW@%").contains(c))
            return 0.92;
        return c >= 'A' && c <= 'Z' ? 0.70 : 0.59;
    }
    // From U+1100 on, most characters are as wide as they are high.
    return character.size() == 2 || character == ellipsis || character.starts_with("\xE2") ? 0.62 : 1.0;
}

} // namespace

double textWidth(std::string_view text, TextFont font) {
    double width = 0;
    while (!text.empty()) {
        const auto character = firstCharacter(text);
        width += advance(character);
        text.remove_prefix(character.size());
    }
    return width * font.size * (font.isBold ? 1.08 : 1);
}

std::string elided(std::string_view text, TextFont font, double width) {
    if (textWidth(text, font) <= width)
        return std::string(text);
    double left = width - textWidth(ellipsis, font);
    std::size_t kept = 0;
    while (kept < text.size()) {
        const auto character = firstCharacter(text.substr(kept));
        left -= textWidth(character, font);
        if (left < 0)
            break;
        kept += character.size();
    }
    return kept == 0 ? "" : std::string(text.substr(0, kept)) + std::string(ellipsis);
}

std::string xmlText(std::string_view text) {
    const std::string valid = lossyUtf8(text);
    std::string escaped;
    escaped.reserve(valid.size());
    for (std::string_view rest = valid; !rest.empty();) {
        const auto character = firstCharacter(rest);
        rest.remove_prefix(character.size());
        const char c = character.front();
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else if ((static_cast<unsigned char>(c) < ' ') || character == "\xEF\xBF\xBE"
                 || character == "\xEF\xBF\xBF")
            escaped += "\uFFFD";
        else
            escaped += character;
    }
    return escaped;
}

} // namespace orbel
