#pragma once

#include "Journal/RestoreOperations.h"

namespace orbel {

/// The move on the real file system. The folder of the item is resolved once and then held open, so that what
/// is done to its name meanwhile leads nowhere else.
///
/// An item that lies in the files/ folder of a Trash has an info file there. That is removed last, once the
/// move is on the disk: a crash leaves an info file without its item (which a listing of the Trash passes
/// over), never an item without its origin. Failing to remove it is not a failure of the move.
class LiveRestore final : public RestoreOperations {
public:
    std::expected<RestoredItem, std::string> move(const std::string& from, const HeldFolder& folder,
                                                  const std::string& name) override;
};

} // namespace orbel
