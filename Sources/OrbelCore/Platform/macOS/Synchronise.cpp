#include "Platform/Synchronise.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

template <class Call>
int untilNotInterrupted(Call call) {
    int result = 0;
    do
        result = call();
    while (result == -1 && errno == EINTR);
    return result;
}

} // namespace

bool synchronise(int descriptor) {
    // fsync leaves the data in the drive's own cache; only this flushes that too.
    if (untilNotInterrupted([&] { return ::fcntl(descriptor, F_FULLFSYNC); }) != -1)
        return true;
    // Network volumes and some folders do not know it. Nothing was tried then, so this is no second attempt.
    if (errno != ENOTSUP && errno != ENOTTY && errno != EINVAL)
        return false;
    return untilNotInterrupted([&] { return ::fsync(descriptor); }) == 0;
}

bool synchroniseFileSystem(int descriptor) {
    return untilNotInterrupted(
               [&] { return ::fsync_volume_np(descriptor, SYNC_VOLUME_FULLSYNC | SYNC_VOLUME_WAIT); })
           == 0;
}

bool mayFlushWholeFileSystem(int) {
    // Nothing is promised about the writes that fail.
    return false;
}

bool keepsMovesByFolder(int) {
    return true;
}

std::uint64_t unwrittenBytes() {
    return 0;
}

bool reserveSpace(int, std::uint64_t, std::uint64_t) {
    // F_PREALLOCATE gives its space back when the descriptor closes, which is long before the
    // line is written.
    return true;
}

} // namespace orbel::platform
