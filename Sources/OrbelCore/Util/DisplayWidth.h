#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orbel {

/// How many columns of a terminal the text takes, which is valid UTF-8 without control characters: two for a
/// wide character, none for one that is drawn over the one before. The C library's own function needs a
/// locale, which the programs never set. Terminals differ on a few rare scripts and joined pictures.
std::size_t displayWidth(std::string_view text);

/// The text in at most so many columns: when it is wider, `mark` stands for what is left out in its middle.
/// Never splits a character from what is drawn over it. Without room for the mark the result is empty.
std::string elidedInMiddle(std::string_view text, std::size_t columns, std::string_view mark);

} // namespace orbel
