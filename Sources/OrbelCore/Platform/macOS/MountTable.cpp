#include "Platform/MountTable.h"

#include <cstdlib>
#include <memory>
#include <span>
#include <utility>

#include <sys/mount.h>
#include <sys/param.h>

namespace orbel::platform {

SharedMountTable sharedMountTable() {
    // The variant that allocates: the other one hands out a table that all threads share. Nothing is
    // refreshed on the way (MNT_NOWAIT), since asking a dead server would hang.
    struct statfs* raw = nullptr;
    const int count = ::getmntinfo_r_np(&raw, MNT_NOWAIT);
    const std::unique_ptr<struct statfs, decltype(&std::free)> owner(raw, &std::free);
    std::vector<Mount> mounts;
    if (count <= 0)
        return std::make_shared<const std::vector<Mount>>();
    mounts.reserve(static_cast<std::size_t>(count));
    for (const auto& mount : std::span(raw, static_cast<std::size_t>(count)))
        mounts.push_back({.id = 0,
                          .parentId = 0,
                          .path = mount.f_mntonname,
                          .fileSystem = mount.f_fstypename,
                          .source = mount.f_mntfromname,
                          .isNetwork = (mount.f_flags & MNT_LOCAL) == 0});
    return std::make_shared<const std::vector<Mount>>(std::move(mounts));
}

} // namespace orbel::platform
