#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// The bytes as one word of a bash command line, in ASCII or valid UTF-8 and on one line, so that any name
/// can be copied into a terminal. Plain words stay as they are.
std::string shellWord(std::string_view bytes);

} // namespace orbel
