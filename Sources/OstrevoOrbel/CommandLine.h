#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orbel {

/// What both programs do before anything else. A headless command in `arguments` (all words, the program's
/// own path first) ends the process itself; `--help`, which ends with `moreHelp`, and `--version` give a
/// status; absent when no such word is there.
std::optional<int> runCommandIfRequested(std::span<const std::string> arguments, std::string_view moreHelp);

/// The program that has no window. Runs what `arguments` (all words, the program's own path first) ask for: a
/// headless command ends the process itself, `--help` and `--version` give 0; with no command the usage goes
/// to standard error and the status is 2.
int runCommandLine(std::span<const std::string> arguments);

} // namespace orbel
