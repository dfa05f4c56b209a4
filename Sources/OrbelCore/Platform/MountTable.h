#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// One mounted file system as this process sees it.
struct Mount {
    std::uint64_t id = 0;       ///< the system's number for this mount; 0 where it has none
    std::uint64_t parentId = 0; ///< the mount that holds the mount point; 0 where unknown
    std::string path;           ///< absolute path of the mount point
    std::string fileSystem;     ///< type, such as "ext4" or "nfs4"
    std::string source;         ///< what is mounted, such as "/dev/sda1"
    bool isNetwork = false;     ///< reached over a network or by a user program: touching it may hang
};

/// All mounts of this process, in mount order; empty when the table cannot be read.
std::vector<Mount> mountTable();

} // namespace orbel::platform
