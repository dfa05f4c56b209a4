#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orbel::platform {

/// Runs a program of the system, its name first, in the C locale and without input, and gives what it
/// printed, regardless of its exit status. Absent when it cannot be started, prints too much or takes longer
/// than 10 seconds; it is then ended.
std::optional<std::string> programOutput(const std::vector<std::string>& words);

} // namespace orbel::platform
