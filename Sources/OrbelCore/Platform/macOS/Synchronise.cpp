#include "Platform/Synchronise.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace orbel::platform {

std::expected<void, int> synchronise(int descriptor) {
    // fsync leaves the data in the drive's own cache; only the full one empties that. Not every file system
    // has it.
    if (::fcntl(descriptor, F_FULLFSYNC) == 0)
        return {};
    if (errno != ENOTSUP && errno != ENOTTY && errno != EINVAL)
        return std::unexpected(errno);
    if (::fsync(descriptor) != 0)
        return std::unexpected(errno);
    return {};
}

} // namespace orbel::platform
