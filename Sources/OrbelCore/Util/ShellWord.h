#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// The bytes as one word of a bash command line, in ASCII or valid UTF-8 and on one line: a person can copy
/// it into a terminal whatever name it holds. Plain words stay as they are.
std::string shellWord(std::string_view bytes);

} // namespace orbel
