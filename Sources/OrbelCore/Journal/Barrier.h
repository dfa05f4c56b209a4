#pragma once

#include "Safety/FileIdentity.h"
#include "Util/FileDescriptor.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <unordered_set>
#include <vector>

namespace orbel {

class HeldFolder;

/// Brings to stable storage what a group of moves wrote: it is told of every file, folder and move, and then
/// passed once for all of them. Where the file system allows it, one flush of the whole of it does; elsewhere
/// each file and folder is flushed by itself.
///
/// One thread at a time. What is added is kept open if need be, and need not live on.
class Barrier {
public:
    /// Flushes each file and folder by itself.
    Barrier() = default;

    /// Takes in with one flush what lies on the file system of this open folder, which must have been opened
    /// for reading, and before anything was written that a flush is to tell the failure of.
    explicit Barrier(FileDescriptor folder);

    /// A file that was written to, or a folder in which names were made; not for a mere O_PATH descriptor.
    void add(int descriptor);
    /// The same for a folder that may be held without the right to read it.
    void add(const HeldFolder& folder);
    /// An entry that was moved between two folders. The new name is flushed before the old one's absence,
    /// because some file systems would otherwise show neither after a power cut.
    void addMove(const HeldFolder& from, const HeldFolder& to);
    /// Lets the next pass() fail, with this errno: something could not be added.
    void fail(int error);

    /// Whether everything that was added gets to the disk in one piece: after a power cut nothing of it is
    /// there without what was done before it, even if pass() was never called.
    bool keepsOrder() const;

    /// Waits until all that was added is on the disk, and forgets it. The error is an errno: any part of it
    /// may then be lost in a power cut, also when a later call succeeds, so that call must not be made.
    std::expected<void, int> pass();

private:
    /// Folders to be flushed, each once.
    struct Folders {
        std::vector<FileDescriptor> open;
        std::unordered_set<FileIdentity> known;
    };

    bool isCovered(int descriptor);
    void addFolder(const HeldFolder& folder, const HeldFolder& other, Folders& folders);
    void addVolume(const HeldFolder& folder);

    FileDescriptor volume_; ///< none: nothing is taken in by one flush
    std::uint64_t device_ = 0;
    bool isVolumeChanged_ = false;
    // What is flushed by itself, in the order of these lists.
    std::vector<FileDescriptor> files_;
    Folders arrivals_;
    Folders volumes_; ///< each stands for all of its file system
    Folders departures_;
    std::optional<int> error_;
};

} // namespace orbel
