#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orbel::platform {

/// The resource value "available capacity for important usage" of the volume that holds `path`, in bytes, as
/// Core Foundation gives it. Absent when the framework or the value is missing, or the value is negative. May
/// take a while: the system asks its services what they could purge. Any thread.
std::optional<std::uint64_t> importantUsageCapacity(const std::string& path);

} // namespace orbel::platform
