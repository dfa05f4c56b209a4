#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orbel {

/// Whether the bytes are well-formed UTF-8: no surrogates, no overlong forms, nothing above U+10FFFF.
bool isValidUtf8(std::string_view bytes);

/// The bytes as text for people: every maximal ill-formed part is replaced by one U+FFFD, the rest is kept as
/// it is. The result is always valid UTF-8. It is for showing only; it no longer names the file.
std::string lossyUtf8(std::string_view bytes);

/// How many characters (code points) the text has, which should be UTF-8.
std::size_t characterCount(std::string_view text);

} // namespace orbel
