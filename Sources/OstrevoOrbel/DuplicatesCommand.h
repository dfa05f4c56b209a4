#pragma once

#include <span>
#include <string>

namespace orbel {

/// `--duplicates-json ROOT [--details]`: scans ROOT, prints the groups of identical files among what of the
/// home folder is in it, and ends the process. Returns when `arguments` do not ask for it.
void runDuplicatesCommandIfRequested(std::span<const std::string> arguments);

} // namespace orbel
