#pragma once

#include <span>
#include <string>

namespace orbel {

/// The program that has no window. Runs what `arguments` (all words, the program's own path first) ask for: a
/// headless command ends the process itself, `--help` and `--version` give 0; with no command the usage goes
/// to standard error and the status is 2.
int runCommandLine(std::span<const std::string> arguments);

} // namespace orbel
