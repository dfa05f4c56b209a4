#include "Screen.h"

#include <algorithm>
#include <array>

namespace orbel {

std::optional<Screen> screenNamed(std::string_view name) {
    static constexpr std::array<std::string_view, 7> names{"overview",  "map",  "large",  "duplicates",
                                                           "uninstall", "tidy", "journal"};
    const auto found = std::ranges::find(names, name);
    if (found == names.end())
        return std::nullopt;
    return static_cast<Screen>(found - names.begin());
}

} // namespace orbel
