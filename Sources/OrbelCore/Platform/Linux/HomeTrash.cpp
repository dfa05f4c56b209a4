#include "Platform/HomeTrash.h"

#include "Util/PathText.h"

#include <cstdlib>

namespace orbel::platform {

std::string homeTrash(const std::string& home) {
    // Safe beside other threads as long as none changes the environment, and none ever does.
    const char* const data = std::getenv("XDG_DATA_HOME"); // NOLINT(concurrency-mt-unsafe)
    if (data != nullptr && data[0] == '/')
        return joinedPath(data, "Trash");
    return joinedPath(home, ".local/share/Trash");
}

std::string trashedItemsFolder(const std::string& trash) {
    return joinedPath(trash, "files");
}

} // namespace orbel::platform
