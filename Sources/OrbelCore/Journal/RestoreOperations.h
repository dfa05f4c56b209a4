#pragma once

#include <expected>
#include <string>

namespace orbel {

class Barrier;
class HeldFolder;

/// Moves items back to where they were. One thread at a time.
class RestoreOperations {
public:
    RestoreOperations() = default;
    RestoreOperations(const RestoreOperations&) = delete;
    RestoreOperations& operator=(const RestoreOperations&) = delete;
    virtual ~RestoreOperations() = default;

    /// Moves what lies at `from`, a link itself and never its target, into `folder` as `name`, which must be
    /// free: nothing is ever replaced or copied. Adds the move to `barrier`. An error is the words of why it
    /// was not moved; it then still lies at `from`. Whether it was the right object that moved is the
    /// caller's to check afterwards.
    virtual std::expected<void, std::string> move(const std::string& from, const HeldFolder& folder,
                                                  const std::string& name, Barrier& barrier) = 0;
};

} // namespace orbel
