#include "Map/TileNavigation.h"
#include "Map/TreemapLayout.h"
#include "Map/TreemapModel.h"
#include "Scan/KindTotals.h"
#include "Support/TreeBuilder.h"

#include <gtest/gtest.h>
#include <random>

namespace orbel {
namespace {

using test::TreeBuilder;
using Tiles = std::vector<TreemapTile>;

constexpr TreemapRect area{.x = 12, .y = 8, .width = 600, .height = 400};
constexpr std::size_t noLimit = 1'000'000;

Tiles tilesOf(const FileTree& tree, NodeIndex focus = 0, const std::optional<Coverage>& coverage = {},
              const TreemapRect& rect = area, int maxDepth = 100, std::size_t limit = noLimit) {
    return TreemapModel::tiles(tree, focus, rect, maxDepth, coverage, limit);
}

const TreemapTile* labelled(const Tiles& tiles, std::string_view label) {
    const auto found = std::ranges::find(tiles, label, &TreemapTile::label);
    return found == tiles.end() ? nullptr : &*found;
}

bool isInside(const TreemapRect& inner, const TreemapRect& outer) {
    constexpr double rounding = 1e-6;
    return inner.x >= outer.x - rounding && inner.y >= outer.y - rounding
           && inner.right() <= outer.right() + rounding && inner.bottom() <= outer.bottom() + rounding;
}

double overlap(const TreemapRect& a, const TreemapRect& b) {
    const double width = std::min(a.right(), b.right()) - std::max(a.x, b.x);
    const double height = std::min(a.bottom(), b.bottom()) - std::max(a.y, b.y);
    return width > 0 && height > 0 ? width * height : 0;
}

TEST(TreemapLayout, IsTheOneThatIsKnown) {
    // The worked example of the paper that describes squarified treemaps.
    const std::vector<double> sizes{6, 6, 4, 3, 2, 2, 1};
    const auto made = TreemapLayout::squarify(sizes, {.x = 0, .y = 0, .width = 6, .height = 4});
    const std::vector<TreemapRect> known{{0, 0, 3, 2},
                                         {0, 2, 3, 2},
                                         {3, 0, 12.0 / 7, 7.0 / 3},
                                         {3 + 12.0 / 7, 0, 9.0 / 7, 7.0 / 3},
                                         {3, 7.0 / 3, 1.2, 5.0 / 3},
                                         {4.2, 7.0 / 3, 1.2, 5.0 / 3},
                                         {5.4, 7.0 / 3, 0.6, 5.0 / 3}};
    ASSERT_EQ(made.size(), known.size());
    for (std::size_t i = 0; i < known.size(); ++i) {
        EXPECT_NEAR(made[i].x, known[i].x, 1e-9) << i;
        EXPECT_NEAR(made[i].y, known[i].y, 1e-9) << i;
        EXPECT_NEAR(made[i].width, known[i].width, 1e-9) << i;
        EXPECT_NEAR(made[i].height, known[i].height, 1e-9) << i;
    }
}

TEST(TreemapLayout, GivesNothingToWhatHasNoSize) {
    const TreemapRect nothing{.x = 12, .y = 8, .width = 0, .height = 0};
    const auto some = TreemapLayout::squarify(std::vector<double>{0, 5, -3}, area);
    EXPECT_EQ(some, (std::vector<TreemapRect>{nothing, area, nothing}));
    EXPECT_EQ(TreemapLayout::squarify(std::vector<double>{0, -1}, area),
              (std::vector<TreemapRect>{nothing, nothing}));
    const TreemapRect flat{.x = 12, .y = 8, .width = 100, .height = 0};
    EXPECT_EQ(TreemapLayout::squarify(std::vector<double>{3}, flat), std::vector<TreemapRect>{nothing});
    EXPECT_TRUE(TreemapLayout::squarify({}, area).empty());
}

TEST(TreemapLayout, KeepsTheOrderOfEqualSizes) {
    const auto made = TreemapLayout::squarify(std::vector<double>{2, 9, 2, 2}, area);
    EXPECT_EQ(made[1].x, area.x) << "the largest comes first";
    for (const auto& [earlier, later] : {std::pair{0, 2}, std::pair{2, 3}})
        EXPECT_TRUE(made[earlier].y < made[later].y || made[earlier].x < made[later].x);
}

/// Sizes as disks have them: many small ones, a few that dwarf all others, and some that are equal.
double randomSize(std::mt19937& random) {
    return std::floor(std::pow(10.0, std::uniform_real_distribution(0.0, 9.0)(random)));
}

TEST(TreemapLayout, CoversTheAreaInProportionWithoutOverlap) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::vector<double> sizes(1 + random() % 60);
        double total = 0;
        for (double& size : sizes)
            total += size = random() % 5 == 0 ? 1000 : randomSize(random);
        const TreemapRect rect{.x = static_cast<double>(random() % 50) - 25.3,
                               .y = 17.7,
                               .width = 1 + static_cast<double>(random() % 3000),
                               .height = 1 + static_cast<double>(random() % 2000)};
        const auto made = TreemapLayout::squarify(sizes, rect);
        for (std::size_t i = 0; i < made.size(); ++i) {
            ASSERT_TRUE(isInside(made[i], rect)) << round << ": " << i;
            ASSERT_NEAR(made[i].area(), sizes[i] * rect.area() / total, rect.area() * 1e-9);
            for (std::size_t j = 0; j < i; ++j)
                ASSERT_LT(overlap(made[i], made[j]), rect.area() * 1e-9) << round << ": " << i << ", " << j;
        }
    }
}

TEST(TreemapModel, DrawsChildrenInsideTheirFolderBelowItsStrip) {
    TreeBuilder builder;
    const auto videos = builder.folder(0, "Videos");
    builder.file(videos, "long.mkv", 600);
    builder.file(videos, "short.mkv", 200);
    builder.file(0, "notes.txt", 200);
    const auto tree = builder.build();
    const auto tiles = tilesOf(tree);

    ASSERT_EQ(tiles.size(), 4);
    const TreemapTile& folder = tiles[0];
    EXPECT_EQ(folder.label, "Videos");
    EXPECT_TRUE(folder.showsChildren);
    EXPECT_EQ(folder.kind, FileKind::video);
    EXPECT_EQ(folder.rect, (TreemapRect{.x = 12, .y = 8, .width = 480, .height = 400}));
    EXPECT_EQ(tiles[1].label, "long.mkv");
    EXPECT_EQ(tiles[1].depth, 1);
    EXPECT_EQ(tiles[1].bytes, 600);
    EXPECT_EQ(tiles[1].rect, (TreemapRect{.x = 14, .y = 24, .width = 357, .height = 382}));
    EXPECT_EQ(tiles[3].label, "notes.txt");
    EXPECT_EQ(tiles[3].depth, 0);
    for (std::size_t i = 0; i < tiles.size(); ++i)
        EXPECT_EQ(tiles[i].id, static_cast<int>(i));

    EXPECT_EQ(TreemapModel::hit(tiles, 20, 30), &tiles[1]) << "the file, not its folder";
    EXPECT_EQ(TreemapModel::hit(tiles, 20, 10), &tiles[0]) << "the strip";
    EXPECT_EQ(TreemapModel::hit(tiles, 12 + 480, 30), &tiles[3]) << "a left edge belongs to its tile";
    EXPECT_EQ(TreemapModel::hit(tiles, area.right(), 30), nullptr);
}

TEST(TreemapModel, MergesWhatIsTooSmall) {
    TreeBuilder builder;
    for (int i = 0; i < 10; ++i)
        builder.file(0, "f" + std::to_string(i), 100);
    const auto tree = builder.build();
    const auto merged = tilesOf(tree, 0, {}, {.x = 0, .y = 0, .width = 20, .height = 14});
    ASSERT_EQ(merged.size(), 1);
    EXPECT_EQ(merged[0].label, "10 smaller items");
    EXPECT_EQ(merged[0].content, (TreemapTile::Content(TreemapTile::SmallerItems{.parent = 0, .count = 10})));
    EXPECT_EQ(merged[0].bytes, 1000);
    EXPECT_EQ(merged[0].kind, FileKind::other);

    EXPECT_EQ(tilesOf(tree, 0, {}, {.x = 0, .y = 0, .width = 20, .height = 15}).size(), 10)
        << "an area of exactly 30 is enough";
    EXPECT_TRUE(tilesOf(tree, 0, {}, {.x = 0, .y = 0, .width = 5, .height = 6}).empty());

    TreeBuilder mixed;
    mixed.file(0, "large", 1'000'000);
    mixed.file(0, "small", 10);
    mixed.file(0, "none", 0);
    const auto tiles = tilesOf(mixed.build(), 0, {}, {.x = 0, .y = 0, .width = 1000, .height = 1000});
    ASSERT_EQ(tiles.size(), 2);
    EXPECT_EQ(tiles[1].label, "2 smaller items");
    EXPECT_NEAR(tiles[1].rect.area(), 10, 0.1);
}

TEST(TreemapModel, HasNothingToDrawWhereNothingTakesSpace) {
    TreeBuilder builder;
    const auto empty = builder.folder(0, "empty");
    builder.file(builder.folder(0, "zeros"), "zero", 0);
    const auto tree = builder.build();
    EXPECT_TRUE(tilesOf(tree).empty());
    EXPECT_TRUE(tilesOf(tree, empty).empty());
    EXPECT_EQ(TreemapModel::representativeKind(tree, empty), FileKind::folder);
}

TEST(TreemapModel, ShowsWhatWasNotMeasured) {
    TreeBuilder builder;
    builder.tree.unreadableCount = 7;
    const auto home = builder.folder(0, "home");
    builder.file(home, "b", 500);
    builder.file(0, "a", 300);
    const auto tree = builder.build();

    const auto tiles = tilesOf(tree, 0, Coverage(1200, tree));
    const auto* missing = labelled(tiles, "Not measured");
    ASSERT_NE(missing, nullptr);
    EXPECT_EQ(missing->bytes, 400);
    EXPECT_EQ(missing->content, (TreemapTile::Content(TreemapTile::NotMeasured{7})));
    EXPECT_FALSE(missing->showsChildren);
    EXPECT_EQ(missing->id, 2) << "between home and a, by its size";
    EXPECT_NEAR(missing->rect.area(), area.area() / 3, 1e-6);

    EXPECT_EQ(labelled(tilesOf(tree, 0, Coverage(800, tree)), "Not measured"), nullptr);
    EXPECT_EQ(labelled(tilesOf(tree, 0, Coverage(10, tree)), "Not measured"), nullptr);
    EXPECT_EQ(labelled(tilesOf(tree, home, Coverage(1200, tree)), "Not measured"), nullptr);
    const auto tooSmall = tilesOf(tree, 0, Coverage(801, tree), {.x = 0, .y = 0, .width = 100, .height = 80});
    EXPECT_NE(labelled(tooSmall, "1 smaller items"), nullptr);
}

TEST(TreemapModel, ShowsChildrenOnlyOfPlainFoldersWithRoom) {
    TreeBuilder builder;
    const auto app = builder.folder(0, "Tool.app");
    builder.file(app, "binary", 500);
    const auto outer = builder.folder(0, "outer");
    const auto inner = builder.folder(outer, "inner");
    builder.file(inner, "movie.mp4", 400);
    const auto tree = builder.build();

    const auto tiles = tilesOf(tree);
    ASSERT_NE(labelled(tiles, "movie.mp4"), nullptr);
    EXPECT_FALSE(labelled(tiles, "Tool.app")->showsChildren);
    EXPECT_EQ(labelled(tiles, "Tool.app")->kind, FileKind::application);
    EXPECT_EQ(labelled(tiles, "binary"), nullptr);

    const auto shallow = tilesOf(tree, 0, {}, area, 1);
    EXPECT_TRUE(labelled(shallow, "outer")->showsChildren);
    EXPECT_FALSE(labelled(shallow, "inner")->showsChildren);
    EXPECT_EQ(labelled(shallow, "inner")->kind, FileKind::video) << "coloured by what is in it";
    EXPECT_EQ(labelled(shallow, "movie.mp4"), nullptr);

    const auto showsOuter = [&](double width, double height) {
        return tilesOf(tree, outer, {}, {.x = 0, .y = 0, .width = width, .height = height})[0].showsChildren;
    };
    EXPECT_FALSE(showsOuter(40, 200));
    EXPECT_FALSE(showsOuter(200, 40));
    EXPECT_TRUE(showsOuter(40.1, 40.1));

    EXPECT_EQ(tilesOf(tree, 0, {}, area, 100, 2).size(), 2);
    EXPECT_TRUE(tilesOf(tree, 0, {}, area, 100, 0).empty());

    EXPECT_EQ(kindTotals(tree, 0)[static_cast<std::size_t>(ContentKind::application)], 500);
    EXPECT_EQ(kindTotals(tree, outer)[static_cast<std::size_t>(ContentKind::video)], 400);
}

TEST(TileNavigation, GoesWhereTheEyeGoes) {
    //  +--folder-----+ +--------+
    //  | first | top | | beside |
    //  |       | low | |        |
    TreeBuilder builder;
    const auto folder = builder.folder(0, "folder");
    builder.file(folder, "first", 400);
    builder.file(folder, "top", 120);
    builder.file(folder, "low", 100);
    builder.file(0, "beside", 300);
    const auto tree = builder.build();
    const auto tiles = tilesOf(tree);
    const auto next = [&](std::string_view from, TileNavigation::Direction direction) {
        const auto found =
            TileNavigation::neighbour(tiles, static_cast<std::size_t>(labelled(tiles, from)->id), direction);
        return found ? tiles[*found].label : "";
    };
    using enum TileNavigation::Direction;
    EXPECT_EQ(next("folder", down), "first");
    EXPECT_EQ(next("first", up), "folder");
    EXPECT_EQ(next("folder", up), "");
    EXPECT_EQ(next("first", left), "");
    EXPECT_EQ(next("top", down), "low");
    EXPECT_EQ(next("low", up), "top");
    EXPECT_EQ(next("top", right), "beside");
    EXPECT_EQ(next("low", right), "beside");
    EXPECT_EQ(next("low", left), "first");
    EXPECT_EQ(next("folder", right), "beside");
    EXPECT_EQ(next("beside", right), "");

    // From every tile every other one can be reached.
    std::vector<bool> reached(tiles.size());
    std::vector<std::size_t> open{0};
    while (!open.empty()) {
        const auto from = open.back();
        open.pop_back();
        if (reached[from])
            continue;
        reached[from] = true;
        for (const auto direction : {left, right, up, down}) {
            if (const auto to = TileNavigation::neighbour(tiles, from, direction))
                open.push_back(*to);
        }
    }
    EXPECT_EQ(std::ranges::count(reached, false), 0);
}

TEST(TreemapModel, HoldsForAnyTree) {
    std::mt19937 random(11);
    for (int round = 0; round < 40; ++round) {
        TreeBuilder builder;
        std::vector<NodeIndex> folders{0};
        for (int i = 0; i < 400; ++i) {
            const NodeIndex parent = folders[random() % folders.size()];
            if (random() % 4 == 0)
                folders.push_back(builder.folder(parent, "d" + std::to_string(i)));
            else
                builder.file(parent, "f" + std::to_string(i), static_cast<std::uint64_t>(randomSize(random)));
        }
        const auto tree = builder.build();
        const TreemapRect rect{.x = 0.5,
                               .y = 3,
                               .width = 20.0 + static_cast<double>(random() % 1500),
                               .height = 20.0 + static_cast<double>(random() % 900)};
        const Coverage coverage(tree.allocated(0) * (random() % 3), tree);
        const auto tiles = tilesOf(tree, 0, coverage, rect);

        std::vector<const TreemapTile*> above; // the folders that the tile is inside of
        for (const TreemapTile& tile : tiles) {
            above.resize(static_cast<std::size_t>(tile.depth));
            const TreemapRect holder = above.empty() ? rect
                                                     : TreemapRect{.x = above.back()->rect.x + 2,
                                                                   .y = above.back()->rect.y + 16,
                                                                   .width = above.back()->rect.width - 4,
                                                                   .height = above.back()->rect.height - 18};
            ASSERT_TRUE(isInside(tile.rect, holder)) << round << ": " << tile.label;
            const std::uint64_t holderBytes =
                above.empty() ? std::max(coverage.used, coverage.measured) : above.back()->bytes;
            ASSERT_TRUE(above.empty() || above.back()->showsChildren);
            ASSERT_NEAR(tile.rect.area() / holder.area(),
                        static_cast<double>(tile.bytes) / static_cast<double>(holderBytes), 1e-6);
            above.push_back(&tile);
            for (const TreemapTile& other : tiles) {
                if (other.id < tile.id && other.depth == tile.depth) {
                    ASSERT_LT(overlap(tile.rect, other.rect), 1e-6) << tile.label << ", " << other.label;
                }
            }
        }
    }
}

} // namespace
} // namespace orbel
