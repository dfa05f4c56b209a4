#pragma once

#include <span>
#include <string>

namespace orbel {

/// `--apps-json`: prints the applications that are installed and ends the process. Returns when `arguments`
/// do not ask for it.
void runAppsCommandIfRequested(std::span<const std::string> arguments);

} // namespace orbel
