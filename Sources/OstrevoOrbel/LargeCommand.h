#pragma once

#include <span>
#include <string>

namespace orbel {

/// `--large-json ROOT [--min-bytes N] [--unused-days N]`: measures ROOT, prints the large files and packages
/// in it that nobody has used for long, and ends the process. Returns when `arguments` do not ask for it.
void runLargeCommandIfRequested(std::span<const std::string> arguments);

} // namespace orbel
