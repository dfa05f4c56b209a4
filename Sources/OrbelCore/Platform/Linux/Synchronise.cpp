#include "Platform/Synchronise.h"

#include "Util/ReadFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/utsname.h>
#include <sys/vfs.h>
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

bool mayFlushWholeFileSystem(int descriptor) {
    // syncfs has reported failed writes since Linux 5.8; before, it only told a bad descriptor.
    struct utsname system {};
    int major = 0;
    int minor = 0;
    if (::uname(&system) != 0 || std::sscanf(system.release, "%d.%d", &major, &minor) != 2
        || std::pair(major, minor) < std::pair(5, 8))
        return false;
    // These commit all changes in one sequence of transactions. Of others nothing is promised.
    struct statfs volume {};
    return ::fstatfs(descriptor, &volume) == 0
           && (volume.f_type == EXT4_SUPER_MAGIC || volume.f_type == XFS_SUPER_MAGIC
               || volume.f_type == BTRFS_SUPER_MAGIC);
}

bool keepsMovesByFolder(int descriptor) {
    // Btrfs logs the names of a flushed folder alone.
    struct statfs volume {};
    return ::fstatfs(descriptor, &volume) != 0 || volume.f_type != BTRFS_SUPER_MAGIC;
}

std::uint64_t unwrittenBytes() {
    const auto text = readFile("/proc/meminfo").value_or("");
    std::uint64_t kilobytes = 0;
    for (const std::string_view name : {"\nDirty:", "\nWriteback:"})
        if (const auto at = text.find(name); at != std::string::npos)
            kilobytes += std::strtoull(text.c_str() + at + name.size(), nullptr, 10);
    return kilobytes * 1024;
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
