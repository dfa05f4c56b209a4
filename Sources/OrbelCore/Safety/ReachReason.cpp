#include "Safety/ReachReason.h"

#include "Platform/FileStatus.h"

#include <cerrno>
#include <climits>
#include <system_error>

namespace orbel {

std::optional<std::string> reachReason(const std::string& path, bool isThere) {
    constexpr std::size_t longestPath = PATH_MAX - 1; // the limit counts the zero byte at the end
    const int error = isThere || platform::fileStatus(path) ? 0 : errno;
    if (error == ENOENT || error == ENOTDIR)
        return std::nullopt;
    if (path.size() > longestPath)
        return "Its path is too long to be moved from here; move a folder above it";
    if (error == 0)
        return std::nullopt;
    if (error == EACCES)
        return "A folder above it may not be entered";
    return "Could not be looked at: " + std::generic_category().message(error);
}

} // namespace orbel
