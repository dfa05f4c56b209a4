#include "Platform/HeldObject.h"

#include <cerrno>

#include <fcntl.h>

namespace orbel::platform {

std::expected<HeldObject, int> HeldObject::hold(const std::string& path) {
    FileDescriptor descriptor(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!descriptor)
        return std::unexpected(errno);
    return HeldObject(path, std::move(descriptor));
}

} // namespace orbel::platform
