#include "Util/ReadFile.h"

#include "Util/FileDescriptor.h"

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

std::optional<std::string> readRegularFile(const std::string& path, std::uint64_t limit) {
    if (path.find('\0') != std::string::npos)
        return std::nullopt;
    const auto isRegular = [](const struct stat& status) { return S_ISREG(status.st_mode); };
    struct stat status {};
    // Asked before it is opened, because opening a device can do something, and again of what was opened.
    if (::stat(path.c_str(), &status) != 0 || !isRegular(status))
        return std::nullopt;
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file || ::fstat(file.get(), &status) != 0 || !isRegular(status))
        return std::nullopt;
    std::string content;
    std::array<char, 16384> buffer{};
    // A file may grow while it is read, and some tell no size.
    while (content.size() <= limit) {
        const auto count = ::read(file.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return content;
        content.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return std::nullopt;
}

} // namespace orbel
