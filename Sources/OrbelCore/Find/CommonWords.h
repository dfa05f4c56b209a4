#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// The text with its ASCII letters in lower case.
std::string lowerCase(std::string_view text);

/// Whether a name, in whatever case, says too little to tell to whom something belongs.
bool isCommonWord(std::string_view name);

} // namespace orbel
