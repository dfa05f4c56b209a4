#pragma once

#include <string>
#include <vector>

namespace orbel::platform {

/// A place that a file manager keeps in its sidebar.
struct Bookmark {
    std::string list;   ///< the file that holds it
    std::string target; ///< absolute path of a file or folder of this computer

    bool operator==(const Bookmark&) const = default;
};

/// The bookmarks of the desktop's file managers, each target once for each list, in the lists' order. Looks
/// at none of the targets. Lists that cannot be read, or are larger than any list is, are left out.
std::vector<Bookmark> fileManagerBookmarks(const std::string& home);

} // namespace orbel::platform
