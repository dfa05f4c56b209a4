#include "Map/TreemapLayout.h"

#include <cstddef>
#include <numeric>

namespace orbel {

namespace {

/// An item's place among the sizes, and the area that it is owed.
struct Item {
    std::size_t index;
    double area;
};

/// The row that is being filled. Its items are sorted, so the first is the largest and the last the smallest.
struct Row {
    std::span<const Item> items;
    double sum = 0;

    Row extended() const {
        const std::span<const Item> longer(items.data(), items.size() + 1);
        return {.items = longer, .sum = sum + longer.back().area};
    }

    /// The largest ratio of long to short side among the items, were the row laid out along `side`.
    double worstRatio(double side) const {
        const double square = side * side;
        return std::max(square * items.front().area / (sum * sum), sum * sum / (square * items.back().area));
    }
};

/// Takes a row's strip from the left or the top of what remains, and gives the items their parts of it.
void layOut(const Row& row, TreemapRect& remaining, std::vector<TreemapRect>& rectangles) {
    const auto& last = row.items.back();
    if (remaining.height <= remaining.width) {
        const double thickness = std::min(remaining.width, row.sum / remaining.height);
        double y = remaining.y;
        for (const Item& item : row.items) {
            const double left = remaining.bottom() - y;
            const double height = &item == &last ? left : std::min(left, item.area / thickness);
            rectangles[item.index] = {.x = remaining.x, .y = y, .width = thickness, .height = height};
            y += height;
        }
        remaining.x += thickness;
        remaining.width -= thickness;
    } else {
        const double thickness = std::min(remaining.height, row.sum / remaining.width);
        double x = remaining.x;
        for (const Item& item : row.items) {
            const double left = remaining.right() - x;
            const double width = &item == &last ? left : std::min(left, item.area / thickness);
            rectangles[item.index] = {.x = x, .y = remaining.y, .width = width, .height = thickness};
            x += width;
        }
        remaining.y += thickness;
        remaining.height -= thickness;
    }
}

} // namespace

std::vector<TreemapRect> TreemapLayout::squarify(std::span<const double> sizes, const TreemapRect& area) {
    std::vector<TreemapRect> rectangles(sizes.size(),
                                        TreemapRect{.x = area.x, .y = area.y, .width = 0, .height = 0});
    std::vector<Item> items;
    items.reserve(sizes.size());
    double total = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (sizes[i] > 0) {
            items.push_back({.index = i, .area = sizes[i]});
            total += sizes[i];
        }
    }
    const bool hasRoom = total > 0 && area.area() > 0;
    if (!hasRoom)
        return rectangles;
    for (Item& item : items)
        item.area = item.area * area.area() / total;
    std::ranges::stable_sort(items, std::ranges::greater{}, &Item::area);

    TreemapRect remaining = area;
    for (std::size_t begin = 0; begin < items.size();) {
        const double side = std::min(remaining.width, remaining.height);
        Row row{.items = {&items[begin], 1}, .sum = items[begin].area};
        while (begin + row.items.size() < items.size()) {
            const Row longer = row.extended();
            if (!(longer.worstRatio(side) < row.worstRatio(side)))
                break;
            row = longer;
        }
        layOut(row, remaining, rectangles);
        begin += row.items.size();
    }
    return rectangles;
}

} // namespace orbel
