#pragma once

#include <string>

namespace orbel {

/// The version of this build, as `--version` prints it and every journal line carries it.
const std::string& appVersion();

} // namespace orbel
