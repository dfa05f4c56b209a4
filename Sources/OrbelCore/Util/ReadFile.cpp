#include "Util/ReadFile.h"

#include "Util/FileDescriptor.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
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

} // namespace orbel
