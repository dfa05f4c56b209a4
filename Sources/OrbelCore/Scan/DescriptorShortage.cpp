#include "Scan/DescriptorShortage.h"

#include <chrono>
#include <thread>

namespace orbel::walk {

bool DescriptorShortage::wait() {
    constexpr std::chrono::milliseconds pause(5);
    constexpr int mostWaits = std::chrono::seconds(10) / pause;
    if (waits_ >= mostWaits || cancellation_.isCancelled())
        return false;
    ++waits_;
    std::this_thread::sleep_for(pause);
    return true;
}

} // namespace orbel::walk
