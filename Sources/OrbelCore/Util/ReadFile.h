#pragma once

#include "Util/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace orbel {

/// The whole content of a file, read to its end regardless of the size that the system reports (files of
/// /proc report 0). Absent when it cannot be opened or a read fails. Follows symbolic links; meant for the
/// system's own tables.
std::optional<std::string> readFile(const std::string& path);

/// The same for an open file, from where it stands.
std::optional<std::string> readFile(int descriptor);

/// An untrusted file opened for reading: only a regular file, or one that a link leads to; else an empty one.
FileDescriptor openRegularFile(const std::string& path);

/// The content of an untrusted file: only of a regular file, or of one that a link leads to, and only when it
/// has at most `limit` bytes. Never waits for the other end of a pipe.
std::optional<std::string> readRegularFile(const std::string& path, std::uint64_t limit);

/// The same of the first `size` bytes of a file of any length; fewer where it ends earlier.
std::optional<std::string> beginningOfRegularFile(const std::string& path, std::size_t size);

} // namespace orbel
