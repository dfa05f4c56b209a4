#include "Launch/Screen.h"

#include <algorithm>

namespace orbel {

std::optional<Screen> screenNamed(std::string_view name) {
    const auto found = std::ranges::find(screenNames, name);
    if (found == screenNames.end())
        return std::nullopt;
    return static_cast<Screen>(found - screenNames.begin());
}

} // namespace orbel
