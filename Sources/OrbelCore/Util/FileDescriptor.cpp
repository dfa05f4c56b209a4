#include "Util/FileDescriptor.h"

#include <algorithm>

#include <sys/resource.h>
#include <unistd.h>

namespace orbel {

void FileDescriptor::reset() noexcept {
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}

std::size_t descriptorsForOneTask() {
    constexpr rlim_t most = 4096;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 1;
    return std::min(limit.rlim_cur / 2, most);
}

} // namespace orbel
