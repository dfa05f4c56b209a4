#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// How large text is set. In pixels.
struct TextFont {
    double size = 11;
    bool isBold = false;
};

/// About how wide text will be in a humanist sans serif. Prefers too wide to too narrow, because the viewer's
/// font is not known.
double textWidth(std::string_view text, TextFont font);

/// The text, or as many of its first characters as fit before "…"; empty when not even one does.
std::string elided(std::string_view text, TextFont font, double width);

/// Text as it stands in an element of XML: what is not valid UTF-8, or not allowed in XML, becomes U+FFFD.
std::string xmlText(std::string_view text);

} // namespace orbel
