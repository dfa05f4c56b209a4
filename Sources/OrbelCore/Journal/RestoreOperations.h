#pragma once

#include <expected>
#include <optional>
#include <string>

namespace orbel {

class HeldFolder;

/// An item that was moved back.
struct RestoredItem {
    /// Why a power cut may still undo the move, for the user to read; absent when it is on the disk.
    std::optional<std::string> flushFailure{};

    bool operator==(const RestoredItem&) const = default;
};

/// Moves items back to where they were. One call at a time.
class RestoreOperations {
public:
    RestoreOperations() = default;
    RestoreOperations(const RestoreOperations&) = delete;
    RestoreOperations& operator=(const RestoreOperations&) = delete;
    virtual ~RestoreOperations() = default;

    /// Moves what lies at `from`, a link itself and never its target, into `folder` as `name`, which must be
    /// free: nothing is ever replaced or copied. An error is the words of why it was not moved; it then still
    /// lies at `from`. Whether it was the right object that moved is the caller's to check afterwards.
    virtual std::expected<RestoredItem, std::string> move(const std::string& from, const HeldFolder& folder,
                                                          const std::string& name) = 0;
};

} // namespace orbel
