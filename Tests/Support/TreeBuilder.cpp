#include "Support/TreeBuilder.h"

namespace orbel::test {

TreeBuilder::TreeBuilder(std::string rootPath) : tree(std::move(rootPath)) {
    add(FileTree::noParent, "", 0, NodeFlags::folder, 2, 1);
}

NodeIndex TreeBuilder::folder(NodeIndex parent, std::string_view name, NodeFlags extra) {
    const NodeFlags package = isPackage(name) ? NodeFlags::package : NodeFlags{};
    return add(parent, name, 0, NodeFlags::folder | package | extra, nextInode_++, 2);
}

NodeIndex TreeBuilder::file(NodeIndex parent, std::string_view name, std::uint64_t bytes, NodeFlags flags) {
    return add(parent, name, bytes, flags, nextInode_++, 1);
}

NodeIndex TreeBuilder::hardLink(NodeIndex parent, std::string_view name, std::uint64_t bytes,
                                std::uint64_t inode) {
    const NodeIndex node = add(parent, name, bytes, {}, inode, 2);
    candidates_.push_back({.node = node, .inode = inode});
    return node;
}

FileTree TreeBuilder::build() {
    FileTree built = tree;
    built.finalize(candidates_);
    return built;
}

NodeIndex TreeBuilder::add(NodeIndex parent, std::string_view name, std::uint64_t bytes, NodeFlags flags,
                           std::uint64_t inode, std::uint16_t links) {
    const auto kind = classify(name, flags.contains(NodeFlags::folder), flags.contains(NodeFlags::package));
    return tree.append({.parent = parent,
                        .name = name,
                        .allocated = bytes,
                        .logical = bytes,
                        .inode = inode,
                        .linkCount = links,
                        .flags = flags,
                        .kind = kind});
}

std::vector<std::string> childNames(const FileTree& tree, NodeIndex folder) {
    std::vector<std::string> names;
    for (const NodeIndex child : tree.children(folder))
        names.push_back(tree.name(child));
    return names;
}

} // namespace orbel::test
