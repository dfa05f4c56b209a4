#include "Util/FileDescriptor.h"

#include <unistd.h>

namespace orbel {

void FileDescriptor::reset() noexcept {
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}

} // namespace orbel
