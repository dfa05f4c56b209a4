// Runs a program with its standard output thrown away and prints what it cost, in one line: wall, user and
// system seconds and the peak memory in KiB. Ends as the program ended.

#include <chrono>
#include <cstdio>
#include <spawn.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

int main(int count, char** values) {
    if (count < 2) {
        std::fputs("usage: measure-program PROGRAM [ARGUMENT…]\n", stderr);
        return 2;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, values[1], &actions, nullptr, values + 1, environ) != 0) {
        std::fprintf(stderr, "measure-program: cannot start %s\n", values[1]);
        return 127;
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child)
        return 126;
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;

    std::printf("%.4f %.4f %.4f %ld\n", wall.count(), seconds(usage.ru_utime), seconds(usage.ru_stime),
                usage.ru_maxrss);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
