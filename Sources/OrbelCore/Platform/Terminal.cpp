#include "Platform/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace orbel::platform {

bool isTerminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

std::optional<std::size_t> terminalColumns(int descriptor) {
    struct winsize size {};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return std::nullopt;
    return size.ws_col;
}

} // namespace orbel::platform
