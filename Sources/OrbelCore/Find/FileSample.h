#pragma once

#include "Safety/FileStamp.h"

#include <cstddef>
#include <optional>
#include <string>

namespace orbel {

/// So much is read of either end of a file as its sample.
inline constexpr std::size_t sampleEndBytes = 4096;

/// A hash of the file's head and, when it is longer than that, its tail: files whose hashes differ have
/// different contents, and nothing follows from those that are alike. Absent when it cannot be read or is no
/// longer what the stamp says.
std::optional<std::size_t> sampleHash(const std::string& path, const FileStamp& stamp);

} // namespace orbel
