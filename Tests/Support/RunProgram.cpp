#include "Support/RunProgram.h"

#include "Support/TemporaryFolder.h"
#include "Util/ReadFile.h"

#include <gtest/gtest.h>
#include <spawn.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::test {

ProgramRun runProgram(std::vector<std::string> words) {
    const TemporaryFolder folder;
    const auto output = folder.path("output");
    const auto errors = folder.path("errors");
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.c_str(), O_CREAT | O_WRONLY, 0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), O_CREAT | O_WRONLY, 0600);

    std::vector<char*> pointers;
    for (auto& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t child = 0;
    const int error = ::posix_spawnp(&child, pointers.front(), &files, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0)
        return {.status = -1, .output = {}, .errors = words.front() + " could not be started"};
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            .output = readFile(output).value_or(""),
            .errors = readFile(errors).value_or("")};
}

ProgramRun runOrbel(const std::vector<std::string>& words) {
    std::vector<std::string> all{ORBEL_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    return runProgram(std::move(all));
}

} // namespace orbel::test
