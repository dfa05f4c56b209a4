#pragma once

#include "Map/TreemapRect.h"

#include <span>
#include <vector>

namespace orbel {

/// The squarified treemap of one list of sizes: rectangles as close to squares as laying out row by row
/// allows. Not instantiable.
struct TreemapLayout {
    TreemapLayout() = delete;

    /// One rectangle for each size, in the order of the sizes, their areas in the ratio of the sizes.
    /// Together they cover `area` without gaps: the last of a row takes what is left of it. A size that is
    /// not positive gets an empty rectangle at the origin of `area`, and so does every size when nothing is
    /// positive or `area` is empty.
    static std::vector<TreemapRect> squarify(std::span<const double> sizes, const TreemapRect& area);
};

} // namespace orbel
