#pragma once

#include "Saved/ScanFile.h"

#include <expected>
#include <optional>
#include <string>

namespace orbel {

/// The scan in the file at this path: a scan file, or a JSON export of ncdu, which may be compressed by gzip
/// or Zstandard. Absent for a file that begins as neither, and for what is no regular file; the error is in
/// words for people.
std::optional<std::expected<KeptScan, std::string>> openScan(const std::string& path);

/// Whether openScan() has an answer for the file at this path. Reads no more than how it begins.
bool isScan(const std::string& path);

} // namespace orbel
