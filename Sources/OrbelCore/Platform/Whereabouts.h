#pragma once

#include <string>

namespace orbel::platform {

/// The name of this machine in its network; empty when it has none.
std::string machineName();

/// The name of the user that this process runs as; the number when it has no name.
std::string userName();

} // namespace orbel::platform
