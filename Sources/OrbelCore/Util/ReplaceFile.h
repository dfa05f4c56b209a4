#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace orbel {

/// Who may read and write a file that is written.
enum class FileAccess : std::uint8_t {
    asUsual,   ///< those who could before; of a new file, whom the user lets by default
    ownerOnly, ///< its owner alone, whatever was allowed before
};

/// Writes a file whole or not at all: beside `path` under a passing name, brought to stable storage, then
/// renamed to `path`. A regular file that is there is replaced; anything else there, a symbolic link too, is
/// left alone and is an error. The error says why, in the system's words;
/// nothing has then changed, and nothing is left behind.
std::expected<void, std::string> replaceFile(const std::string& path, std::string_view content,
                                             FileAccess access = FileAccess::asUsual);

} // namespace orbel
