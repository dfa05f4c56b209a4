#include "Platform/HeldObject.h"

#include <cerrno>

#include <fcntl.h>

namespace orbel::platform {

std::expected<HeldObject, int> HeldObject::hold(const std::string& path) {
    // For events only: the volume it lies on can still be ejected.
    FileDescriptor descriptor(::open(path.c_str(), O_EVTONLY | O_SYMLINK | O_NONBLOCK | O_CLOEXEC));
    // What may not be opened is held by its number alone: APFS never gives a number twice.
    if (!descriptor && errno != EACCES && errno != EPERM)
        return std::unexpected(errno);
    return HeldObject(path, std::move(descriptor));
}

} // namespace orbel::platform
