#pragma once

#include <optional>
#include <string>

namespace orbel {

/// What the symbolic link at `path` holds, as bytes; absent when there is no link or it cannot be read.
std::optional<std::string> linkText(const std::string& path);

} // namespace orbel
