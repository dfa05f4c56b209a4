#include "Map/TreemapModel.h"
#include "Scan/KindTotals.h"
#include "TreeNames.h"

#include <benchmark/benchmark.h>
#include <cmath>

namespace orbel {
namespace {

/// A finished tree of that many nodes, eleven entries a folder, with sizes as a disk has them: many small
/// files, few that are large.
FileTree homeOf(std::size_t nodes) {
    FileTree tree("/home/ann");
    benchmarks::Random random(1);
    for (std::size_t i = 0; i < nodes; ++i) {
        const bool isFolder = i < nodes / 11;
        const auto theme = static_cast<benchmarks::Theme>(random.below(benchmarks::themeCount));
        const std::string name = i == 0     ? ""
                                 : isFolder ? benchmarks::folderName(random, i)
                                            : benchmarks::fileName(random, theme, i);
        const auto magnitude = static_cast<double>(random.below(1000)) / 110;
        const auto bytes = isFolder ? 0 : static_cast<std::uint64_t>(std::pow(10, magnitude));
        tree.nameStart.push_back(static_cast<std::uint32_t>(tree.names.size()));
        tree.nameLength.push_back(static_cast<std::uint16_t>(name.size()));
        tree.names.insert(tree.names.end(), name.begin(), name.end());
        tree.parentIndex.push_back(i == 0 ? FileTree::noParent : static_cast<NodeIndex>((i - 1) / 11));
        tree.allocatedBytes.push_back(bytes);
        tree.logicalBytes.push_back(bytes);
        tree.modifiedMinutes.push_back(28'000'000);
        tree.inodes.push_back(i);
        tree.linkCounts.push_back(1);
        tree.nodeFlags.push_back(isFolder ? NodeFlags::folder.rawValue : 0);
        tree.kinds.push_back(static_cast<std::uint8_t>(classify(name, isFolder, false)));
    }
    tree.finalize({});
    return tree;
}

const FileTree& home() {
    static const FileTree tree = homeOf(1'000'000);
    return tree;
}

std::vector<TreemapTile> tilesAt(double width, double height) {
    return TreemapModel::tiles(home(), 0, {.x = 0, .y = 0, .width = width, .height = height}, 64,
                               std::nullopt, 1'000'000);
}

/// The width of the area that shows about that many tiles, three parts wide to two high.
double widthFor(std::size_t tiles) {
    double width = 300;
    while (tilesAt(width, width * 2 / 3).size() < tiles)
        width *= 1.02;
    return width;
}

void layOutTiles(benchmark::State& state) {
    const double width = widthFor(static_cast<std::size_t>(state.range(0)));
    std::size_t tiles = 0;
    for (auto _ : state)
        tiles = tilesAt(width, width * 2 / 3).size();
    state.counters["tiles"] = static_cast<double>(tiles);
    state.counters["width"] = width;
}
BENCHMARK(layOutTiles)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void findTileUnderPoint(benchmark::State& state) {
    const double width = widthFor(10'000);
    const auto tiles = tilesAt(width, width * 2 / 3);
    double x = 0;
    for (auto _ : state) {
        x = x + 7 < width ? x + 7 : 0;
        benchmark::DoNotOptimize(TreemapModel::hit(tiles, x, x / 2));
    }
}
BENCHMARK(findTileUnderPoint)->Unit(benchmark::kMicrosecond);

void sumUpKinds(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(kindTotals(home(), 0));
}
BENCHMARK(sumUpKinds)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace orbel
