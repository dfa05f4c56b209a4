#pragma once

#include "Delete/TrashOperations.h"

#include <chrono>
#include <functional>
#include <memory>

namespace orbel {

class StrayItems;
struct TrashFolder;

/// The user's Trash. Where the system has a call of its own for the move, that is used; elsewhere the Trash
/// folder is kept as the freedesktop.org Trash specification 1.0 has it: items in files/, and in info/ for
/// each a file that tells where it came from.
///
/// What is promised there:
///  - Nothing is ever replaced or copied. A name that is taken, in files/ or in info/, makes the item go by
///    another one; an item on another file system is refused.
///  - No link is followed on the way to the item: a folder on `path` that is a link was put there after the
///    real path was found, and is refused. So is a Trash that is not wholly the user's own.
///  - The info file is complete before the item moves, so that after a power cut the item lies either at its
///    place or in the Trash with a whole info file. When the item does not move, the file is removed.
///
/// The sizes of folders that other programs may have recorded in the Trash's file `directorysizes` are left
/// alone: a recorded size is stale once its info file has changed.
class LiveTrash final : public TrashOperations {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    /// `trashFolder`: absolute path of the home Trash. It is made at the first move if it is missing, with
    /// the folders above it, for the user alone. `now` gives the time that the info files tell.
    explicit LiveTrash(std::string trashFolder, Clock now = std::chrono::system_clock::now);

    std::vector<std::expected<PlannedMove, std::string>> plan(std::span<const std::string> paths,
                                                              Barrier& barrier) override;
    std::expected<std::unique_ptr<TrashMove>, TrashFailure> prepare(const PlannedMove& move,
                                                                    Barrier& barrier) override;

private:
    std::string trashFolder_;
    Clock now_;
    std::shared_ptr<const TrashFolder> openTrash_; ///< that the last plans are for; null where there is none
    std::shared_ptr<StrayItems> strays_;           ///< in it, for large groups
};

} // namespace orbel
