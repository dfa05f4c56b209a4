#pragma once

#include <cstdint>
#include <memory>
#include <span>
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

/// All mounts of this process, in mount order; empty when the table cannot be read. Any thread. Cheap enough
/// to be asked for every item: where the system tells of changes, the table is only read again after one.
std::vector<Mount> mountTable();

/// The same, without a copy for each question.
using SharedMountTable = std::shared_ptr<const std::vector<Mount>>;
SharedMountTable sharedMountTable();

/// The mount points at or below which a question to the file system may wait for a server, for a user program
/// or for something to be mounted: network, FUSE and automount file systems that nothing local is mounted
/// over. Left out are those that hold one of the `trusted` real paths, which are asked about anyway.
std::vector<std::string> mountPointsOutOfReach(const std::vector<Mount>& mounts,
                                               std::span<const std::string> trusted);

} // namespace orbel::platform
