#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orbel::platform {

/// What is needed of /proc/PID/stat.
struct ProcessState {
    std::string name; ///< as the program calls itself, cut to 15 bytes
    bool isKernelThread = false;
    bool isEnded = false; ///< waits only for its parent to ask how it ended
};

/// Absent when the text is not of its form.
std::optional<ProcessState> parseProcessState(std::string_view text);

/// One file in /proc/PID/maps.
struct MappedFile {
    std::string_view range{}; ///< its addresses, which name the mapping in map_files/
    /// Device, inode and path as they stand there: equal for every mapping of one file.
    std::string_view file{};
    std::uint64_t device = 0; ///< of the file system, which is not that of its files where it has subvolumes
    std::uint64_t inode = 0;
    /// As it stands there: a line feed in it is written \012, which a name may also contain.
    std::string_view path{};
};

/// Calls `use` for every mapped file, once for mappings of the same file that stand in a row. What is mapped
/// without a file, and lines of another form, are passed over.
void forEachMappedFile(std::string_view maps, const std::function<void(const MappedFile&)>& use);

/// A socket in /proc/net/unix that other programs reach by a path.
struct BoundSocket {
    std::uint64_t inode = 0; ///< of the socket, as in the "socket:[1025]" of a descriptor; not of the file
    std::string_view path{}; ///< absolute, as it was bound, so perhaps of a file that is gone or was moved
};

/// Calls `use` for every socket bound to an absolute path that waits for connections or messages. The ends of
/// accepted connections carry the same path and are passed over, as are lines of another form.
void forEachBoundSocket(std::string_view sockets, const std::function<void(const BoundSocket&)>& use);

/// The inode in the "socket:[1025]" that a descriptor leads to; absent when it is not a socket.
std::optional<std::uint64_t> socketInode(std::string_view link);

} // namespace orbel::platform
