#pragma once

#include <optional>
#include <string>

namespace orbel {

/// The whole content of a file, read to its end whatever size the system reports for it (files of /proc
/// report 0). Absent when it cannot be opened or a read fails. Follows symbolic links; meant for the system's
/// own tables.
std::optional<std::string> readFile(const std::string& path);

/// The same for an open file, from where it stands.
std::optional<std::string> readFile(int descriptor);

} // namespace orbel
