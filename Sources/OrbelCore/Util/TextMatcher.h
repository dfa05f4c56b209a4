#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// UTF-8 with every letter of the Latin, Greek, Cyrillic and Armenian scripts in lower case, one character
/// for one. Other characters, and bytes that are not valid UTF-8, stay as they are.
std::string caseFolded(std::string_view text);

/// Finds one text in many others, regardless of the case of letters, as caseFolded() knows it. Composed and
/// decomposed accents are different characters. Immutable; may be asked by any thread.
class TextMatcher {
public:
    explicit TextMatcher(std::string_view text);

    /// Whether the text is somewhere in these bytes, which may be those of any file's name. Every text
    /// contains the empty one.
    bool isIn(std::string_view bytes) const;
    /// The same of a path as people see it, with "~" for the home.
    bool isInPath(std::string_view path, std::string_view home) const;

private:
    std::string wanted_; ///< folded
    bool isAscii_;
};

} // namespace orbel
