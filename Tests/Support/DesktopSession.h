#pragma once

#include <string>
#include <vector>

namespace orbel::test {

/// The words of a command that runs `shellCommand` with the desktop's own tools at hand: in a session bus of
/// its own, with `home` as the home. The tools look at every mount of the machine, and one whose server does
/// not answer would hang them, so where the tests may do so they run without such mounts.
std::vector<std::string> desktopSession(const std::string& home, const std::string& shellCommand);

} // namespace orbel::test
