#include "Support/RunProgram.h"

#include "Util/ReadFile.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::test {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    for (auto& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(std::vector<std::string> changes) {
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view inherited(*variable);
        const auto name = inherited.substr(0, inherited.find('=') + 1);
        bool isChanged = false;
        for (const auto& change : changes)
            isChanged = isChanged || change.starts_with(name);
        if (!isChanged)
            changes.emplace_back(inherited);
    }
    return changes;
}

} // namespace

RunningProgram::RunningProgram(const ProgramStart& start) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    const auto output = folder_.path("output");
    const auto errors = folder_.path("errors");
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.c_str(), O_CREAT | O_WRONLY, 0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), O_CREAT | O_WRONLY, 0600);
    if (!start.folder.empty())
        posix_spawn_file_actions_addchdir_np(&files, start.folder.c_str());
    auto words = start.words;
    auto environment = environmentWith(start.environment);
    hasEnded_ = ::posix_spawnp(&child_, words.front().c_str(), &files, nullptr, pointersTo(words).data(),
                               pointersTo(environment).data())
                != 0;
    status_ = hasEnded_ ? SIGKILL : 0;
    posix_spawn_file_actions_destroy(&files);
}

RunningProgram::~RunningProgram() {
    if (!hasEnded_) {
        signal(SIGKILL);
        wait(0);
    }
}

void RunningProgram::signal(int number) const {
    if (!hasEnded_) // its number may belong to another process by now
        ::kill(child_, number);
}

bool RunningProgram::isRunning() {
    wait(WNOHANG);
    return !hasEnded_;
}

ProgramRun RunningProgram::finish() {
    wait(0);
    return {.status = WIFEXITED(status_) ? WEXITSTATUS(status_) : -1,
            .output = readFile(folder_.path("output")).value_or(""),
            .errors = readFile(folder_.path("errors")).value_or("")};
}

void RunningProgram::wait(int options) {
    if (!hasEnded_)
        hasEnded_ = ::waitpid(child_, &status_, options) == child_;
}

ProgramRun runProgram(std::vector<std::string> words) {
    return RunningProgram({.words = std::move(words)}).finish();
}

ProgramRun runOrbel(const std::vector<std::string>& words) {
    std::vector<std::string> all{ORBEL_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    return runProgram(std::move(all));
}

std::vector<std::string> environmentOf(const std::string& home) {
    return {"HOME=" + home, "XDG_DATA_HOME=", "XDG_CONFIG_HOME=", "XDG_CACHE_HOME=", "XDG_STATE_HOME="};
}

} // namespace orbel::test
