#include "Platform/Linux/ProgramOutput.h"

#include "Util/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <memory>
#include <poll.h>
#include <spawn.h>
#include <string_view>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

struct DestroyActions {
    void operator()(posix_spawn_file_actions_t* actions) const {
        ::posix_spawn_file_actions_destroy(actions);
    }
};

/// All that comes through the pipe until it is closed at the other end.
std::optional<std::string> received(int pipe) {
    using Clock = std::chrono::steady_clock;
    constexpr std::size_t mostBytes = 64 * 1024 * 1024;
    const auto end = Clock::now() + std::chrono::seconds(10);
    std::string output;
    std::array<char, 65536> buffer{};
    while (output.size() <= mostBytes) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting{.fd = pipe, .events = POLLIN, .revents = 0};
        const int ready = left > 0 ? ::poll(&waiting, 1, static_cast<int>(left)) : 0;
        if (ready < 0 && errno == EINTR)
            continue;
        const auto count = ready > 0 ? ::read(pipe, buffer.data(), buffer.size()) : -1;
        if (count == 0)
            return output;
        if (count < 0)
            return std::nullopt;
        output.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return std::nullopt;
}

/// As exec takes them.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

std::optional<ProgramEnd> runProgram(const std::vector<std::string>& words,
                                     const std::vector<std::string>& variables) {
    std::array<int, 2> ends{};
    if (words.empty() || ::pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::nullopt;
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);

    posix_spawn_file_actions_t actions{};
    if (::posix_spawn_file_actions_init(&actions) != 0)
        return std::nullopt;
    const std::unique_ptr<posix_spawn_file_actions_t, DestroyActions> destroyed(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, writing.get(), STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    auto copies = words;
    const auto arguments = pointersTo(copies);
    auto settings = variables;
    settings.insert(settings.end(), {"PATH=/usr/bin:/bin:/usr/sbin:/sbin", "LC_ALL=C"});
    const auto environment = pointersTo(settings);

    pid_t child = 0;
    const auto program = words.front().starts_with('/') ? words.front() : "/usr/bin/" + words.front();
    if (::posix_spawn(&child, program.c_str(), &actions, nullptr, arguments.data(), environment.data()) != 0)
        return std::nullopt;
    writing.reset();
    auto output = received(reading.get());
    if (!output)
        ::kill(child, SIGKILL);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!output)
        return std::nullopt;
    return ProgramEnd{.output = *std::move(output), .status = WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

std::optional<std::string> programOutput(const std::vector<std::string>& words) {
    auto end = runProgram(words);
    return end ? std::optional(std::move(end->output)) : std::nullopt;
}

} // namespace orbel::platform
