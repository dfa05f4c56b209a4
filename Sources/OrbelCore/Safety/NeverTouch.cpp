#include "Safety/NeverTouch.h"

#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

bool NeverTouch::hasProtectedComponent(std::string_view path) {
    return std::ranges::any_of(pathComponents(path), [](std::string_view component) {
        return std::ranges::any_of(protectedComponentSuffixes, [component](std::string_view suffix) {
            return component.ends_with(suffix);
        });
    });
}

} // namespace orbel
