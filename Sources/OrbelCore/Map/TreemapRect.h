#pragma once

#include <algorithm>

namespace orbel {

/// A rectangle in points; y grows downward, as on the screen. A plain value.
struct TreemapRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double area() const { return width * height; }
    double right() const { return x + width; }
    double bottom() const { return y + height; }

    /// Half-open: of two rectangles that share an edge, a point on it is in the right or the lower one.
    bool contains(double px, double py) const {
        return x <= px && px < x + width && y <= py && py < y + height;
    }

    /// The origin moves by (dx, dy); width and height shrink by twice that, but not below 0.
    TreemapRect insetBy(double dx, double dy) const {
        return {.x = x + dx,
                .y = y + dy,
                .width = std::max(width - 2 * dx, 0.0),
                .height = std::max(height - 2 * dy, 0.0)};
    }

    bool operator==(const TreemapRect&) const = default;
};

} // namespace orbel
