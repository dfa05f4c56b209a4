#include "Platform/InstalledIds.h"

namespace orbel::platform {

// What a bundle left cannot be told from what programs without a bundle keep under an id of their own.
InstalledIds installedIds(const std::string& /*home*/) {
    return {};
}

} // namespace orbel::platform
