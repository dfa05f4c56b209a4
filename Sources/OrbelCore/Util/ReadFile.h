#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace orbel {

/// The whole content of a file, read to its end whatever size the system reports for it (files of /proc
/// report 0). Absent when it cannot be opened or a read fails. Follows symbolic links; meant for the system's
/// own tables.
std::optional<std::string> readFile(const std::string& path);

/// The same for an open file, from where it stands.
std::optional<std::string> readFile(int descriptor);

/// Fills `bytes` from `offset` of an open file on and returns how many there were: fewer only at its end.
/// Absent when a read fails.
std::optional<std::size_t> readAt(int descriptor, std::span<char> bytes, std::uint64_t offset);

} // namespace orbel
