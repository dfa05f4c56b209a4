#include "Support/FlushHook.h"

#include <cerrno>
#include <mutex>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orbel::test {

namespace {

std::mutex mutex;
FlushHook::Before hook;

int flush(long call, int file) {
    struct stat status {};
    {
        const std::scoped_lock lock(mutex);
        if (hook && ::fstat(file, &status) == 0)
            if (const int error = hook(
                    {.file = {.device = static_cast<std::uint32_t>(status.st_dev), .inode = status.st_ino},
                     .isAll = call == SYS_syncfs});
                error != 0) {
                errno = error;
                return -1;
            }
    }
    return static_cast<int>(::syscall(call, file));
}

} // namespace

FlushHook::FlushHook(Before before) {
    const std::scoped_lock lock(mutex);
    hook = std::move(before);
}

FlushHook::~FlushHook() {
    const std::scoped_lock lock(mutex);
    hook = nullptr;
}

} // namespace orbel::test

// These take the place of the C library's for all that is linked into the tests.

extern "C" int fsync(int file) {
    return orbel::test::flush(SYS_fsync, file);
}

extern "C" int syncfs(int file) noexcept {
    return orbel::test::flush(SYS_syncfs, file);
}
