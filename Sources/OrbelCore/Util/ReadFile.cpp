#include "Util/ReadFile.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

std::optional<std::string> readFile(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file)
        return std::nullopt;
    return readFile(file.get());
}

std::optional<std::string> readFile(int descriptor) {
    std::string content;
    std::array<char, 16384> buffer{};
    while (true) {
        const auto count = ::read(descriptor, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return content;
        content.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

FileDescriptor openRegularFile(const std::string& path) {
    if (path.find('\0') != std::string::npos)
        return {};
    const auto isRegular = [](const struct stat& status) { return S_ISREG(status.st_mode); };
    struct stat status {};
    // Asked before it is opened, because opening a device can do something, and again of what was opened.
    if (::stat(path.c_str(), &status) != 0 || !isRegular(status))
        return {};
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file || ::fstat(file.get(), &status) != 0 || !isRegular(status))
        return {};
    return file;
}

namespace {

/// Up to `size` bytes, fewer where it ends earlier: a file may grow while it is read, and some tell no size.
std::optional<std::string> readUpTo(const FileDescriptor& file, std::uint64_t size) {
    std::string content;
    std::array<char, 65536> buffer{};
    while (file && content.size() < size) {
        const auto wanted = std::min<std::uint64_t>(buffer.size(), size - content.size());
        const auto count = ::read(file.get(), buffer.data(), wanted);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        content.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return file ? std::optional(std::move(content)) : std::nullopt;
}

} // namespace

std::optional<std::string> readRegularFile(const std::string& path, std::uint64_t limit) {
    auto content = readUpTo(openRegularFile(path), limit + 1);
    return content && content->size() <= limit ? std::move(content) : std::nullopt;
}

std::optional<std::string> beginningOfRegularFile(const std::string& path, std::size_t size) {
    return readUpTo(openRegularFile(path), size);
}

} // namespace orbel
