#pragma once

#include <string>
#include <vector>

namespace orbel {

struct Request;

/// The paths that `--trash` is to move, as bytes: the operands, or the names in the file of `--files0-from`.
/// A list that is not fit to be followed as a whole (empty names, "." or "..", a last name without its NUL,
/// which may be the start of a longer one) ends the process as wrong usage, one that cannot be read as
/// incomplete; nothing has been touched then.
std::vector<std::string> pathsIn(const Request& request);

} // namespace orbel
