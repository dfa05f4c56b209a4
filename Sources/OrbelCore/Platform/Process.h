#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orbel::platform {

/// The largest amount of memory this process has held at one time, in bytes; 0 when it cannot be asked.
std::uint64_t peakFootprintBytes();

/// The words this process was started with, the program's own path first; empty when they cannot be read.
std::vector<std::string> processArguments();

} // namespace orbel::platform
