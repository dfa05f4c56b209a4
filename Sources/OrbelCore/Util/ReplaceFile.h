#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace orbel {

/// Writes a file whole or not at all: beside `path` under a passing name, brought to stable storage, then
/// renamed to `path`. A regular file that is there is replaced and its permissions are kept; anything else
/// there, a symbolic link too, is left alone and is an error. The error says why, in the system's words;
/// nothing has then changed, and nothing is left behind.
std::expected<void, std::string> replaceFile(const std::string& path, std::string_view content);

} // namespace orbel
