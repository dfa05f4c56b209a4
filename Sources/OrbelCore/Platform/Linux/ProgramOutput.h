#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orbel::platform {

/// What a program printed, and how it ended.
struct ProgramEnd {
    std::string output;
    int status = 0; ///< its exit status; -1 when a signal ended it
};

/// Runs a program of the system, its name first, without input, in the C locale and with an environment of
/// nothing else but `variables` ("NAME=value"). Absent when it cannot be started, prints too much or takes
/// longer than 10 seconds; it is then ended.
std::optional<ProgramEnd> runProgram(const std::vector<std::string>& words,
                                     const std::vector<std::string>& variables = {});

/// What it printed, regardless of its exit status.
std::optional<std::string> programOutput(const std::vector<std::string>& words);

} // namespace orbel::platform
