#include "Platform/AliasFile.h"

namespace orbel::platform {

std::optional<AliasTarget> aliasTarget(const std::string& /*path*/) {
    return std::nullopt;
}

} // namespace orbel::platform
