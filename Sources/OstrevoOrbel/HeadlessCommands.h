#pragma once

#include <span>
#include <string>

namespace orbel {

struct Command;

/// The commands that print a result and end the process, before any window or model exists.
struct HeadlessCommands {
    HeadlessCommands() = delete;

    /// Runs the command that `arguments` ask for and ends the process with one of the ExitStatus; a line that
    /// is read strictly and not understood ends it too. Returns when no such command is there. `arguments`
    /// are all words of the command line, the program's own path first.
    static void runIfRequested(std::span<const std::string> arguments);

    /// Runs a command that is read strictly with what the line asks of it, and ends the process.
    [[noreturn]] static void run(const Command& command, std::span<const std::string> arguments);
};

} // namespace orbel
