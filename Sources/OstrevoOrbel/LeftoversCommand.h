#pragma once

#include <span>
#include <string>

namespace orbel {

/// `--leftovers-dry-run`: prints for every application what would go with it, and ends the process. Moves and
/// writes nothing. Returns when `arguments` do not ask for it.
void runLeftoversCommandIfRequested(std::span<const std::string> arguments);

} // namespace orbel
