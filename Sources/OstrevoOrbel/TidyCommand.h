#pragma once

#include <span>
#include <string>

namespace orbel {

/// `--tidy-json ROOT`: measures ROOT, prints its empty folders and its broken shortcuts, and ends the
/// process. Returns when `arguments` do not ask for it.
void runTidyCommandIfRequested(std::span<const std::string> arguments);

} // namespace orbel
