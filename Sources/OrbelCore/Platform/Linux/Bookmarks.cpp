#include "Platform/Bookmarks.h"

#include "Platform/Linux/EnvironmentText.h"
#include "Platform/Linux/Portable/BookmarkLists.h"

namespace orbel::platform {

std::vector<Bookmark> fileManagerBookmarks(const std::string& home) {
    return bookmarksOf(home, environmentText("XDG_CONFIG_HOME"), environmentText("XDG_DATA_HOME"));
}

} // namespace orbel::platform
