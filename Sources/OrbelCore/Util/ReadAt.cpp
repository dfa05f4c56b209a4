#include "Util/ReadAt.h"

#include <cerrno>

#include <unistd.h>

namespace orbel {

std::optional<std::size_t> readAt(int descriptor, std::span<char> bytes, std::uint64_t offset) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto count =
            ::pread(descriptor, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

} // namespace orbel
