#pragma once

#include <string>

namespace orbel::platform {

/// The value of a variable of this process's environment; empty when it is not set.
std::string environmentText(const char* variable);

} // namespace orbel::platform
