#include "Scan/Exclusions.h"

#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

bool Exclusions::leavesOut(std::string_view path, std::string_view root) const {
    return std::ranges::any_of(paths, [&](const std::string& left) {
        return isPathInside(path, left) && left != root && isPathInside(left, root);
    });
}

std::string excludedPath(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    const std::string text(path);
    return RealPath::resolve(text).value_or(text);
}

} // namespace orbel
