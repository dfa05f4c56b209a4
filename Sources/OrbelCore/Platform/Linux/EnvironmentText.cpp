#include "Platform/Linux/EnvironmentText.h"

#include <cstdlib>

namespace orbel::platform {

std::string environmentText(const char* variable) {
    // Safe beside other threads as long as none changes the environment, and none ever does.
    const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace orbel::platform
