#pragma once

#include <cstdint>

namespace orbel::platform {

/// The largest amount of memory this process has held at one time, in bytes; 0 when it cannot be asked.
std::uint64_t peakFootprintBytes();

} // namespace orbel::platform
