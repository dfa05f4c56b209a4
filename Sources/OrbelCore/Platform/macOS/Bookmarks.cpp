#include "Platform/Bookmarks.h"

namespace orbel::platform {

// The sidebar's list is in a form of the system's own.

std::vector<Bookmark> fileManagerBookmarks(const std::string& /*home*/) {
    return {};
}

} // namespace orbel::platform
