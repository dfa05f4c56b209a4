#pragma once

#include "Util/Iso8601.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// A file or folder that a list in XBEL names.
struct XbelBookmark {
    std::string path;             ///< absolute
    std::optional<Date> latest{}; ///< of the dates at which it was added, modified and visited

    bool operator==(const XbelBookmark&) const = default;
};

/// The local files and folders among the bookmarks of a list in XBEL, as desktops write it, in its order;
/// addresses of any other kind are passed over. The text may be anything: what is not well formed ends the
/// reading, and what was read up to there stands.
std::vector<XbelBookmark> localBookmarksIn(std::string_view xbel);

} // namespace orbel::platform
