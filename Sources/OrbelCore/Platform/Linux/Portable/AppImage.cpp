#include "Platform/Linux/Portable/AppImage.h"

#include "Util/FileDescriptor.h"

#include <array>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel::platform {

bool isAppImage(const std::string& path) {
    constexpr std::string_view elf = "\x7F"
                                     "ELF";
    constexpr std::size_t markAt = 8;
    struct stat status {};
    // Asked before it is opened, because opening a device can do something.
    if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
    std::array<char, 11> head{};
    if (!file || ::read(file.get(), head.data(), head.size()) != static_cast<ssize_t>(head.size()))
        return false;
    const std::string_view bytes(head.data(), head.size());
    return bytes.starts_with(elf) && (bytes.substr(markAt) == "AI\x01" || bytes.substr(markAt) == "AI\x02");
}

} // namespace orbel::platform
