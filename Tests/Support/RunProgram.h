#pragma once

#include <string>
#include <vector>

namespace orbel::test {

/// What a finished program left behind.
struct ProgramRun {
    int status = -1; ///< exit status; -1 when it was ended by a signal
    std::string output;
    std::string errors;
};

/// Runs a program, found along PATH unless its name is a path, with the words after its name, and waits for
/// it.
ProgramRun runProgram(std::vector<std::string> words);

/// Runs the built terminal program with these words after its name and waits for it.
ProgramRun runOrbel(const std::vector<std::string>& words);

} // namespace orbel::test
