#pragma once

#include "Support/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace orbel::test {

/// What a finished program left behind.
struct ProgramRun {
    int status = -1; ///< exit status; -1 when it was ended by a signal
    std::string output;
    std::string errors;
};

/// What a program is started with.
struct ProgramStart {
    std::string program = ORBEL_PROGRAM;
    std::vector<std::string> words;         ///< after its name
    std::vector<std::string> environment{}; ///< "NAME=value", in place of what the tests have under that name
    std::string folder{};                   ///< the current folder; empty means that of the tests
};

/// A program that runs beside the test. Killed when it still runs at the end of its scope.
class RunningProgram {
public:
    explicit RunningProgram(const ProgramStart& start);
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram();

    void signal(int number) const;
    bool isRunning();
    /// Waits for its end.
    ProgramRun finish();

private:
    void wait(int options);

    TemporaryFolder folder_;
    pid_t child_ = 0;
    bool hasEnded_ = false;
    int status_ = 0;
};

/// Runs a program, its name first, and waits for it. One that cannot be started has the status -1.
ProgramRun runProgram(std::vector<std::string> words);

/// Runs the built terminal program with these words after its name and waits for it.
ProgramRun runOrbel(const std::vector<std::string>& words);

/// The environment in which the terminal program sees nothing but this home.
std::vector<std::string> environmentOf(const std::string& home);

} // namespace orbel::test
