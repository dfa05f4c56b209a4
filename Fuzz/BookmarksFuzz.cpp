#include "Platform/Linux/Portable/BookmarkLists.h"
#include "Platform/Linux/Portable/Xbel.h"
#include "Util/Check.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Whatever bytes are in the place of a file manager's list: reading them ends, and names only absolute paths
// that the system takes as a whole.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const auto& target : orbel::platform::bookmarkLines(text)) {
        ORBEL_CHECK(target.starts_with('/'), "a path of this computer");
        ORBEL_CHECK(target.find('\0') == std::string::npos, "a path and nothing behind it");
    }
    for (const auto& bookmark : orbel::platform::localBookmarksIn(text))
        ORBEL_CHECK(bookmark.path.starts_with('/'), "a path of this computer");
    return 0;
}
