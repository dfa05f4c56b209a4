#include "Platform/Synchronise.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace orbel::platform {

bool synchronise(int descriptor) {
    // Interrupted by a signal it has not looked at what was written yet, so only then is asking again honest.
    int result = 0;
    do
        result = ::fsync(descriptor);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

bool synchroniseFileSystem(int descriptor) {
    return ::syncfs(descriptor) == 0;
}

bool reserveSpace(int descriptor, std::uint64_t offset, std::uint64_t bytes) {
    int result = 0;
    do
        result = ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, static_cast<off_t>(offset),
                             static_cast<off_t>(bytes));
    while (result != 0 && errno == EINTR);
    return result == 0 || (errno != ENOSPC && errno != EDQUOT);
}

} // namespace orbel::platform
