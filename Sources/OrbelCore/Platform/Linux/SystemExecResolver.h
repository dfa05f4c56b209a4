#pragma once

#include "Platform/Linux/Portable/ExecResolver.h"

#include <string>

namespace orbel::platform {

/// With this process's environment and the network file systems that are mounted now.
ExecResolver systemExecResolver(const std::string& home);

} // namespace orbel::platform
