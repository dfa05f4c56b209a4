#include "Support/OpenHook.h"

#include <cerrno>
#include <cstdarg>
#include <mutex>

#include <sys/syscall.h>
#include <unistd.h>

namespace orbel::test {

namespace {

std::mutex mutex;
OpenHook::Before hook;

} // namespace

OpenHook::OpenHook(Before before) {
    const std::scoped_lock lock(mutex);
    hook = std::move(before);
}

OpenHook::~OpenHook() {
    const std::scoped_lock lock(mutex);
    hook = nullptr;
}

} // namespace orbel::test

/// Takes the place of the C library's for all that is linked into the tests. Not declared by its header here,
/// which may make an inline function of it.
extern "C" int openat(int folder, const char* name, int flags, ...) { // NOLINT(cert-dcl50-cpp)
    va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = va_arg(arguments, unsigned); // junk where none was given, which is then not used
    va_end(arguments);
    {
        const std::scoped_lock lock(orbel::test::mutex);
        if (orbel::test::hook) {
            if (const int error = orbel::test::hook(name); error != 0) {
                errno = error;
                return -1;
            }
        }
    }
    return static_cast<int>(::syscall(SYS_openat, folder, name, flags, mode));
}
