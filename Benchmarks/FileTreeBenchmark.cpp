#include "Scan/FileKind.h"
#include "Scan/FileTree.h"

#include <array>
#include <benchmark/benchmark.h>
#include <random>
#include <string>
#include <string_view>

namespace orbel {
namespace {

constexpr std::array<std::string_view, 6> names{"IMG_20240131_1207.jpg", "index.js",     "README",
                                                "Quarterly report.xlsx", "libcore.so.6", "holiday.mp4"};

/// A tree of that many nodes as a walk leaves it: eleven entries a folder, one file in a hundred linked
/// twice.
struct WalkedTree {
    FileTree tree{"/home/ann"};
    std::vector<FileTree::HardLinkCandidate> links;

    explicit WalkedTree(std::size_t nodes) {
        std::mt19937 random(1);
        add(FileTree::noParent, "", true, 0, 1);
        for (NodeIndex i = 1; i < nodes; ++i) {
            const NodeIndex parent = (i - 1) / 11;
            const bool isFolder = i < nodes / 11;
            const bool isLink = !isFolder && i % 100 == 0;
            add(parent, names[random() % names.size()], isFolder, random() % 1'000'000, isLink ? i / 200 : i);
            if (isLink)
                links.push_back({.node = i, .inode = i / 200});
        }
    }

private:
    void add(NodeIndex parent, std::string_view name, bool isFolder, std::uint64_t bytes,
             std::uint64_t inode) {
        tree.nameStart.push_back(static_cast<std::uint32_t>(tree.names.size()));
        tree.nameLength.push_back(static_cast<std::uint16_t>(name.size()));
        tree.names.insert(tree.names.end(), name.begin(), name.end());
        tree.parentIndex.push_back(parent);
        tree.allocatedBytes.push_back(isFolder ? 0 : bytes);
        tree.logicalBytes.push_back(bytes);
        tree.modifiedMinutes.push_back(28'000'000);
        tree.inodes.push_back(inode);
        tree.linkCounts.push_back(1);
        tree.nodeFlags.push_back(isFolder ? NodeFlags::folder.rawValue : 0);
        tree.kinds.push_back(static_cast<std::uint8_t>(classify(name, isFolder, false)));
    }
};

void finalizeTree(benchmark::State& state) {
    const WalkedTree walked(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        FileTree tree = walked.tree;
        state.ResumeTiming();
        tree.finalize(walked.links);
        benchmark::DoNotOptimize(tree.allocated(0));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(finalizeTree)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();

void removeOneNode(benchmark::State& state) {
    WalkedTree walked(static_cast<std::size_t>(state.range(0)));
    walked.tree.finalize(walked.links);
    NodeIndex next = static_cast<NodeIndex>(state.range(0)) - 1;
    for (auto _ : state)
        walked.tree.remove(std::array{next--});
}
BENCHMARK(removeOneNode)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();

void classifyNames(benchmark::State& state) {
    for (auto _ : state) {
        for (const std::string_view name : names)
            benchmark::DoNotOptimize(classify(name, false, false));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(names.size()));
}
BENCHMARK(classifyNames);

} // namespace
} // namespace orbel
