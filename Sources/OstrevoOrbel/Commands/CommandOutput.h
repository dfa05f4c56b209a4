#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// Exit statuses, the same for every command.
struct ExitStatus {
    static constexpr int done = 0;
    static constexpr int incomplete = 1; ///< something was not done, or the result could not be written
    static constexpr int wrongUsage = 2;
};

/// A line of words for the user, on standard error.
void say(std::string_view words);

/// Prints a part of a command's result. When standard output does not take it, the process
/// ends with `incomplete`.
void print(std::string_view part);

/// Prints the result of a command, or what is left of it, and ends the process with this status, or with
/// `incomplete` when standard output does not take the result. The process ends without unwinding: freeing a
/// tree of millions of nodes one by one would only cost time.
[[noreturn]] void finish(const std::string& output, int status = ExitStatus::done);

/// The same with a result for this file, which is replaced whole or not at all; "-" is standard output.
[[noreturn]] void finishInto(const std::string& file, const std::string& output);

/// Says what is wrong with the command line and ends the process.
[[noreturn]] void finishWrongUsage(std::string_view words);

} // namespace orbel
