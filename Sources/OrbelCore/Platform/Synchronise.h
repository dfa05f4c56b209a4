#pragma once

#include <cstdint>

namespace orbel::platform {

/// Brings what was written to an open file, or the names in an open folder, to stable storage, the drive's
/// own cache included. False with errno set when that failed: what had been written may then be lost although
/// a second call succeeds, so a caller must not rely on a retry.
[[nodiscard]] bool synchronise(int descriptor);

/// The same for everything that was written to the file system that holds an open file. The file must have
/// been opened for reading or writing.
[[nodiscard]] bool synchroniseFileSystem(int descriptor);

/// Whether synchroniseFileSystem() may take the place of synchronise() on each file and folder: it reports
/// every write that failed since the descriptor was opened, and the file system keeps the order of changes,
/// so that after a power cut no change is there without those before it. False when in doubt.
[[nodiscard]] bool mayFlushWholeFileSystem(int descriptor);

/// Whether a move between two folders lasts once both are flushed, the new one first, without a moment in
/// between at which a power cut would leave both names. Elsewhere it takes synchroniseFileSystem().
[[nodiscard]] bool keepsMovesByFolder(int descriptor);

/// How many bytes programs have written that are not on a disk yet, for which synchroniseFileSystem() may
/// have to wait; 0 where the system does not say.
[[nodiscard]] std::uint64_t unwrittenBytes();

/// Reserves room on the disk for `bytes` beyond the first `offset` bytes of an open file, without changing
/// its length or content. False with errno set only when the room is not there; true also where a file system
/// cannot reserve.
[[nodiscard]] bool reserveSpace(int descriptor, std::uint64_t offset, std::uint64_t bytes);

} // namespace orbel::platform
