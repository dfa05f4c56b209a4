#pragma once

#include <string_view>

namespace orbel {

/// Whether a program made the symbolic link at `path`, which holds `text`, to remember something
/// rather than to lead anywhere: a lock that names its holder, a drive letter, the place of a file
/// that is kept elsewhere.
bool isProgramsOwnLink(std::string_view path, std::string_view text);

} // namespace orbel
