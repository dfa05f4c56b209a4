#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace orbel {

/// Who may read and write a file that is written.
enum class FileAccess : std::uint8_t {
    asUsual,   ///< the old permissions; for a new file, those of the umask
    ownerOnly, ///< its owner alone, regardless of the old permissions
};

/// Writes a file whole or not at all: beside `path` under a temporary name, brought to stable storage, then
/// renamed to `path`. A regular file that is there is replaced; anything else there, a symbolic link too, is
/// left alone and is an error. The error says why, in the system's words; nothing has then changed, and
/// nothing is left behind.
std::expected<void, std::string> replaceFile(const std::string& path, std::string_view content,
                                             FileAccess access = FileAccess::asUsual);

} // namespace orbel
