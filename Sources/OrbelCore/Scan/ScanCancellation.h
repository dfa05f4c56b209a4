#pragma once

#include <atomic>

namespace orbel {

/// The token that stops a scan or a session. Shared by the thread that cancels and those that work; any
/// thread may call either member. There is no reset: every scan has a token of its own.
class ScanCancellation {
public:
    void cancel() { cancelled_.store(true, std::memory_order_relaxed); }
    bool isCancelled() const { return cancelled_.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> cancelled_ = false;
};

} // namespace orbel
