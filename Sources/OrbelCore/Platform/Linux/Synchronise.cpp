#include "Platform/Synchronise.h"

#include <cerrno>

#include <unistd.h>

namespace orbel::platform {

std::expected<void, int> synchronise(int descriptor) {
    if (::fsync(descriptor) != 0)
        return std::unexpected(errno);
    return {};
}

} // namespace orbel::platform
