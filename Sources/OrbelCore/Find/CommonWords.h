#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// The text with its ASCII letters in lower case.
std::string lowerCase(std::string_view text);

/// Whether a name, in any case of letters, is too common to show which program something belongs to.
bool isCommonWord(std::string_view name);

} // namespace orbel
