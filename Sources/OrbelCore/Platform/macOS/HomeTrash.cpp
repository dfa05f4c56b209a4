#include "Platform/HomeTrash.h"

#include "Util/PathText.h"

namespace orbel::platform {

std::string homeTrash(const std::string& home) {
    return joinedPath(home, ".Trash");
}

std::string trashedItemsFolder(const std::string& trash) {
    return trash;
}

} // namespace orbel::platform
