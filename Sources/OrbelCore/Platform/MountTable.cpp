#include "Platform/MountTable.h"

#include "Util/PathText.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace orbel::platform {

std::vector<Mount> mountTable() {
    return *sharedMountTable();
}

std::vector<std::string> mountPointsOutOfReach(const std::vector<Mount>& mounts,
                                               std::span<const std::string> trusted) {
    if (std::ranges::none_of(mounts, &Mount::isNetwork))
        return {};
    // Of several mounts on one point the last one lies on top.
    std::map<std::string_view, bool> isSlow;
    for (const auto& mount : mounts)
        isSlow[mount.path] = mount.isNetwork;
    std::vector<std::string> points;
    for (const auto& [point, isNetwork] : isSlow) {
        const auto holds = [point](const std::string& path) { return isPathInside(path, point); };
        if (isNetwork && std::ranges::none_of(trusted, holds))
            points.emplace_back(point);
    }
    return points;
}

} // namespace orbel::platform
