#pragma once

#include "Scan/ScanCancellation.h"

#include <cerrno>
#include <expected>

namespace orbel::walk {

/// Waits while the process is out of file descriptors: other threads release theirs as they go on, and what
/// could not be opened for that reason alone must not count as unreadable. One thread uses it.
class DescriptorShortage {
public:
    explicit DescriptorShortage(const ScanCancellation& cancellation) : cancellation_(cancellation) {}

    /// What `open` gives, called again for as long as descriptors are short; where it gives nothing, the
    /// errno of its last failure. Without any success for ten seconds in a row, or cancelled, it waits no
    /// more. The caller must hold no descriptor that others may be waiting for.
    template <class Open>
    auto waitFor(Open open) -> std::expected<typename decltype(open())::value_type, int> {
        while (true) {
            if (auto opened = open()) {
                waits_ = 0;
                return *std::move(opened);
            }
            const int error = errno;
            if ((error != EMFILE && error != ENFILE) || !wait())
                return std::unexpected(error);
        }
    }

private:
    /// False when it is not worth waiting any longer.
    bool wait();

    const ScanCancellation& cancellation_;
    int waits_ = 0; ///< since the last success
};

} // namespace orbel::walk
