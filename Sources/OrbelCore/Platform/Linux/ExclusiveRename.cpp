#include "Platform/ExclusiveRename.h"

#include <cerrno>
#include <cstdio>

namespace orbel::platform {

std::expected<void, int> renameExclusively(int fromFolder, const std::string& from, int toFolder,
                                           const std::string& to) {
    if (::renameat2(fromFolder, from.c_str(), toFolder, to.c_str(), RENAME_NOREPLACE) != 0)
        return std::unexpected(errno);
    return {};
}

} // namespace orbel::platform
