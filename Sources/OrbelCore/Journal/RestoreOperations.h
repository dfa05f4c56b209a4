#pragma once

#include <expected>
#include <string>

namespace orbel {

/// Moves items back to where they were. One call at a time.
class RestoreOperations {
public:
    RestoreOperations() = default;
    RestoreOperations(const RestoreOperations&) = delete;
    RestoreOperations& operator=(const RestoreOperations&) = delete;
    virtual ~RestoreOperations() = default;

    /// Moves what lies at `from`, a link itself and never its target, to `to`, where nothing may exist:
    /// nothing is ever replaced or copied. An error is the words of why it was not moved; it then still lies
    /// at `from`.
    virtual std::expected<void, std::string> move(const std::string& from, const std::string& to) = 0;
};

} // namespace orbel
