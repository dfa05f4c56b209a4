#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include <pthread.h>

namespace orbel {

/// A thread with a name and a stack size, which std::thread cannot be given. Joins when destroyed. Movable.
class Thread {
public:
    /// The usual size on Linux, asked for by name because other systems would give much less (macOS 512 KiB).
    static constexpr std::size_t defaultStackBytes = 8 * 1024 * 1024;

    Thread() = default;

    /// Starts a thread that runs `body` once. The name is cut to what the system takes (15 bytes on Linux).
    /// `stackBytes` is a multiple of 64 KiB, which suits the pages of every system. Returns a thread for
    /// which `joinable()` is false when the system has none to give; `body` has then not run.
    static Thread start(std::string name, std::size_t stackBytes, std::function<void()> body);

    /// Starts a detached thread with the default stack; it ends with its body. Its priority is lower, because
    /// people wait for the thread that started it. False when the system has no thread to give.
    [[nodiscard]] static bool startDetached(std::string name, std::function<void()> body);

    Thread(Thread&& other) noexcept;
    Thread& operator=(Thread&& other) noexcept;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ~Thread();

    bool joinable() const { return joinable_; }
    void join();

private:
    pthread_t thread_{};
    bool joinable_ = false;
};

} // namespace orbel
