#include "Support/MadeUpTree.h"

namespace orbel::test {

MadeUpTree::MadeUpTree(unsigned seed) : random_(seed), builder_("/home/\xFF odd") {
    std::vector<NodeIndex> folders{0};
    for (int i = 0; i < 400; ++i) {
        const auto parent = folders[below(folders.size())];
        switch (below(6)) {
        case 0:
            folders.push_back(
                builder_.folder(parent, name(), below(9) == 0 ? NodeFlags::unreadable : NodeFlags{}));
            break;
        case 1:
            builder_.hardLink(parent, name(), 8192, 7 + below(12));
            break;
        case 2:
            if (const auto node = builder_.folder(parent, name(), NodeFlags::otherVolume); below(2) == 0)
                builder_.tree.excludedNodes.insert(node);
            break;
        case 3:
            builder_.file(parent, below(2) == 0 ? "key4.db" : name(), 0, NodeFlags::symlink);
            break;
        default: {
            const auto node = builder_.file(parent, name(), below(1'000'000'000) * 512,
                                            below(5) == 0 ? NodeFlags::mayShareBlocks : NodeFlags{});
            if (below(20) == 0)
                builder_.tree.aliasNodes.insert(node);
            if (below(20) == 0)
                builder_.tree.otherDevices[node] = 1ULL << 63U;
        }
        }
    }
    auto& tree = builder_.tree;
    for (NodeIndex node = 0; node < tree.count(); ++node) {
        tree.modifiedMinutes[node] = static_cast<std::int32_t>(random_());
        if (below(3) == 0)
            tree.logicalBytes[node] = (std::uint64_t{random_()} << 31U) + random_();
        if (below(4) == 0 && tree.linkCounts[node] == 1)
            tree.inodes[node] = (std::uint64_t{random_()} << 32U) + random_();
    }
    tree.unlistedEntries[folders.back()] = 3;
    tree.device = 0xFFFF'FFFF'0000'0001;
    tree.unreadableCount = 11;
    tree.datalessCount = 2;
    tree.otherVolumeCount = 1;
    tree.requestedRootPath = "~/odd";
    tree.exclusions = {.paths = {"/home/x"}, .patterns = {"*.iso", "a/\xFE"}};
}

std::size_t MadeUpTree::below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
}

std::string MadeUpTree::name() {
    std::string name = std::to_string(++count_);
    const auto size = below(50) == 0 ? 250 : below(12);
    while (name.size() < size) {
        const auto byte = static_cast<char>(1 + below(255));
        name += byte == '/' ? '_' : byte;
    }
    return name;
}

namespace {

/// All that is known of a node, in the order in which it is shown.
void describe(const FileTree& tree, NodeIndex node, std::vector<std::string>& lines) {
    const auto device = tree.identity(node).device;
    std::string line = tree.walkedPath(node);
    for (const std::uint64_t number :
         {tree.allocated(node), tree.logical(node), tree.inode(node), device,
          std::uint64_t{tree.linkCount(node)}, std::uint64_t{tree.descendantCount(node)},
          std::uint64_t{tree.flags(node).rawValue}, std::uint64_t{tree.kinds[node]}, tree.unreadableIn(node),
          std::uint64_t{tree.isAlias(node)}, std::uint64_t{tree.isExcluded(node)},
          std::uint64_t{tree.containsProtectedData(node)}})
        line += " " + std::to_string(number);
    lines.push_back(line + " " + std::to_string(tree.modified(node).time_since_epoch().count()));
    for (const NodeIndex child : tree.children(node))
        describe(tree, child, lines);
}

} // namespace

std::vector<std::string> described(const FileTree& tree) {
    std::vector<std::string> lines;
    describe(tree, 0, lines);
    for (const auto number : {tree.device, tree.unreadableCount, tree.datalessCount, tree.otherVolumeCount})
        lines.push_back(std::to_string(number));
    lines.push_back(tree.requestedRootPath);
    lines.insert(lines.end(), tree.exclusions.paths.begin(), tree.exclusions.paths.end());
    lines.insert(lines.end(), tree.exclusions.patterns.begin(), tree.exclusions.patterns.end());
    return lines;
}

} // namespace orbel::test
