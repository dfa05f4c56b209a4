#include "Map/TreemapModel.h"

#include "Map/TreemapLayout.h"

#include <algorithm>
#include <ranges>

namespace orbel {

namespace {

/// What is to be laid out beside others in one rectangle.
struct Item {
    TreemapTile::Content content;
    std::uint64_t bytes = 0;
};

class TileMaker {
public:
    TileMaker(const FileTree& tree, int maxDepth, std::size_t tileLimit)
        : tree_(tree), maxDepth_(maxDepth), tileLimit_(tileLimit) {}

    /// Lays out what lies in `parent`, and `notMeasured` beside it when that is not 0.
    void addLevel(NodeIndex parent, const TreemapRect& area, int depth,
                  const std::optional<Item>& notMeasured) {
        if (area.area() <= TreemapModel::minimumTileArea)
            return;
        const auto items = itemsOf(parent, area, notMeasured);
        std::vector<double> sizes;
        sizes.reserve(items.size());
        for (const Item& item : items)
            sizes.push_back(static_cast<double>(item.bytes));
        const auto rectangles = TreemapLayout::squarify(sizes, area);
        for (std::size_t i = 0; i < items.size() && tiles_.size() < tileLimit_; ++i) {
            if (rectangles[i].area() > 0)
                add(items[i], rectangles[i], depth);
        }
    }

    std::vector<TreemapTile> take() { return std::move(tiles_); }

private:
    /// The items that get a tile of their own, largest first, and last the one that stands for all others.
    std::vector<Item> itemsOf(NodeIndex parent, const TreemapRect& area,
                              const std::optional<Item>& notMeasured) const {
        // A folder is the sum of its children.
        const std::uint64_t total = tree_.allocated(parent) + (notMeasured ? notMeasured->bytes : 0);
        if (total == 0)
            return {};
        const double scale = area.area() / static_cast<double>(total);
        const auto isDrawn = [&](std::uint64_t bytes) {
            return static_cast<double>(bytes) * scale >= TreemapModel::minimumTileArea;
        };

        const auto children = tree_.children(parent);
        const auto drawn =
            std::ranges::partition_point(children, isDrawn, [&](NodeIndex i) { return tree_.allocated(i); });
        std::vector<Item> items;
        items.reserve(static_cast<std::size_t>(drawn - children.begin()) + 2);
        for (const NodeIndex child : std::ranges::subrange(children.begin(), drawn))
            items.push_back({.content = TreemapTile::Node{child}, .bytes = tree_.allocated(child)});
        auto merged = static_cast<std::size_t>(children.end() - drawn);
        if (notMeasured && isDrawn(notMeasured->bytes)) {
            const auto place =
                std::ranges::upper_bound(items, notMeasured->bytes, std::ranges::greater{}, &Item::bytes);
            items.insert(place, *notMeasured);
        } else if (notMeasured) {
            ++merged;
        }
        if (merged > 0) {
            std::uint64_t rest = total;
            for (const Item& item : items)
                rest -= item.bytes;
            items.push_back(
                {.content = TreemapTile::SmallerItems{.parent = parent, .count = merged}, .bytes = rest});
        }
        return items;
    }

    void add(const Item& item, const TreemapRect& rect, int depth) {
        TreemapTile& tile = tiles_.emplace_back();
        tile.id = static_cast<int>(tiles_.size()) - 1;
        tile.content = item.content;
        tile.rect = rect;
        tile.depth = depth;
        tile.bytes = item.bytes;
        if (const auto* smaller = std::get_if<TreemapTile::SmallerItems>(&item.content)) {
            tile.label = std::to_string(smaller->count) + " smaller items";
        } else if (std::holds_alternative<TreemapTile::NotMeasured>(item.content)) {
            tile.label = "Not measured";
        } else {
            const NodeIndex node = std::get<TreemapTile::Node>(item.content).index;
            tile.label = tree_.name(node);
            tile.kind = TreemapModel::representativeKind(tree_, node);
            // Below this a strip with a name and padding leaves no room worth dividing.
            constexpr double sideWithChildren = 40;
            tile.showsChildren = rect.width > sideWithChildren && rect.height > sideWithChildren
                                 && TreemapModel::isPlainFolder(tree_, node) && depth < maxDepth_
                                 && tiles_.size() < tileLimit_;
            if (tile.showsChildren) // `tile` may move from here on
                addLevel(node, insideOf(rect), depth + 1, std::nullopt);
        }
    }

    static TreemapRect insideOf(const TreemapRect& folder) {
        constexpr double padding = TreemapModel::padding;
        return {.x = folder.x + padding,
                .y = folder.y + TreemapModel::headerHeight,
                .width = folder.width - 2 * padding,
                .height = folder.height - (TreemapModel::headerHeight + padding)};
    }

    const FileTree& tree_;
    int maxDepth_;
    std::size_t tileLimit_;
    std::vector<TreemapTile> tiles_;
};

} // namespace

std::vector<TreemapTile> TreemapModel::tiles(const FileTree& tree, NodeIndex focus, const TreemapRect& area,
                                             int maxDepth, const std::optional<Coverage>& coverage,
                                             std::size_t tileLimit) {
    std::optional<Item> notMeasured;
    if (focus == 0 && coverage && coverage->notMeasured() > 0)
        notMeasured = {.content = TreemapTile::NotMeasured{coverage->unreadableEntries},
                       .bytes = coverage->notMeasured()};
    TileMaker maker(tree, maxDepth, tileLimit);
    maker.addLevel(focus, area, 0, notMeasured);
    return maker.take();
}

const TreemapTile* TreemapModel::hit(std::span<const TreemapTile> tiles, double x, double y) {
    const auto found = std::ranges::find_if(
        tiles.rbegin(), tiles.rend(), [&](const TreemapTile& tile) { return tile.rect.contains(x, y); });
    return found == tiles.rend() ? nullptr : &*found;
}

NodeIndex TreemapModel::representative(const FileTree& tree, NodeIndex node) {
    while (isPlainFolder(tree, node)) {
        const auto children = tree.children(node);
        if (children.empty())
            break;
        node = children.front();
    }
    return node;
}

FileKind TreemapModel::representativeKind(const FileTree& tree, NodeIndex node) {
    const NodeIndex shown = representative(tree, node);
    return isPlainFolder(tree, shown) ? FileKind::folder : tree.kind(shown);
}

ContentKind TreemapModel::contentKind(const FileTree& tree, NodeIndex node) {
    const NodeIndex shown = representative(tree, node);
    return isPlainFolder(tree, shown) ? ContentKind::folder : orbel::contentKind(tree, shown);
}

bool TreemapModel::isPlainFolder(const FileTree& tree, NodeIndex node) {
    const NodeFlags flags = tree.flags(node);
    return flags.contains(NodeFlags::folder) && !flags.contains(NodeFlags::package);
}

} // namespace orbel
