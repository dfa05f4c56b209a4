#pragma once

#include "Journal/RestoreOperations.h"

namespace orbel {

/// The move on the real file system. The folder of the item is resolved once and then held open, so that what
/// is done to its name meanwhile leads nowhere else.
class LiveRestore final : public RestoreOperations {
public:
    std::expected<void, std::string> move(const std::string& from, const HeldFolder& folder,
                                          const std::string& name, Barrier& barrier) override;
};

} // namespace orbel
