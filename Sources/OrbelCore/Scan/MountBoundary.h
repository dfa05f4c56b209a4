#pragma once

#include "Platform/MountTable.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace orbel::walk {

/// The mount points inside a scanned root, known before any of them is touched: opening one may mount it, and
/// one of a server that does not answer blocks for good.
class MountBoundary {
public:
    /// `root`: real path. `rootMountId`: the mount that holds it; only what is mounted directly on that one
    /// can be met by a walk that never leaves it. 0 when the system does not number its mounts; then every
    /// mount counts.
    MountBoundary(const std::vector<platform::Mount>& mounts, const std::string& root,
                  std::uint64_t rootMountId);

    /// Whether a mount point has this last component; most names need no path because of it.
    bool mayContain(std::string_view name) const { return !names_.empty() && names_.contains(name); }
    /// Whether this absolute path is a mount point.
    bool contains(const std::string& path) const { return paths_.contains(path); }

private:
    std::unordered_set<std::string> paths_;
    std::unordered_set<std::string_view> names_; // into paths_, whose elements never move
};

} // namespace orbel::walk
