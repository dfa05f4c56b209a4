#pragma once

#include <cstddef>
#include <utility>

namespace orbel {

/// Owns one open file descriptor and closes it when destroyed. Movable, not copyable; -1 means none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

    /// Gives the descriptor up without closing it.
    int release() { return std::exchange(descriptor_, -1); }

    /// Closes what is held. An error from close is ignored: nothing that reads can act on it, and what writes
    /// synchronises before it closes.
    void reset() noexcept;

private:
    int descriptor_ = -1;
};

/// How many descriptors one piece of work may hold at a time: half of what this process may have, since the
/// other half is for the program around it; at most 4096. Any thread.
std::size_t descriptorsForOneTask();

} // namespace orbel
