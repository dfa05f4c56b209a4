#include "Scan/MountBoundary.h"

#include "Safety/RealPath.h"

namespace orbel::walk {

MountBoundary::MountBoundary(const std::vector<platform::Mount>& mounts, const std::string& root,
                             std::uint64_t rootMountId) {
    for (const auto& mount : mounts) {
        const bool isDirectlyOnRoot = rootMountId == 0 || mount.parentId == rootMountId;
        if (!isDirectlyOnRoot || mount.path == root || !RealPath::isInside(mount.path, root))
            continue;
        const std::string& path = *paths_.insert(mount.path).first;
        names_.insert(std::string_view(path).substr(path.rfind('/') + 1));
    }
}

} // namespace orbel::walk
