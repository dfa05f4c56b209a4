#include "Platform/Linux/Portable/RecentlyUsed.h"

#include "Platform/Linux/Portable/Xbel.h"

#include <algorithm>

namespace orbel::platform {

UseDates recentlyUsedIn(std::string_view xbel) {
    UseDates dates;
    for (const auto& [path, latest] : localBookmarksIn(xbel)) {
        if (!latest)
            continue;
        auto& date = dates.try_emplace(path, *latest).first->second;
        date = std::max(date, *latest);
    }
    return dates;
}

} // namespace orbel::platform
