#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orbel {

/// What both programs do before anything else, with `arguments`: all words of the command line, the program's
/// own path first. A headless command, `--help`, which ends with `moreHelp`, and `--version` end the process.
/// Returns when none of these is there.
void runCommandIfRequested(std::span<const std::string> arguments, std::string_view moreHelp);

/// The same for the program that has no window: without a command it prints the table of a folder.
[[noreturn]] void runCommandLine(std::span<const std::string> arguments);

} // namespace orbel
