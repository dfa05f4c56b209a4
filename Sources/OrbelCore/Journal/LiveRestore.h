#pragma once

#include "Journal/RestoreOperations.h"

namespace orbel {

/// The move on the real file system. The folders of both paths are resolved once and then held open, so that
/// what is done to their names meanwhile leads nowhere else.
///
/// An item that lies in the files/ folder of a Trash has an info file there; that is removed last, so that a
/// crash leaves an info file without its item (which the next listing of the Trash passes over), never an
/// item of which nobody knows where it belongs. Failing to remove it is not a failure of the move.
class LiveRestore final : public RestoreOperations {
public:
    std::expected<void, std::string> move(const std::string& from, const std::string& to) override;
};

} // namespace orbel
