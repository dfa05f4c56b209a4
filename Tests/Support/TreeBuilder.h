#pragma once

#include "Scan/FileTree.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::test {

/// Puts a tree together by hand, as the walker would leave it before it is finalised.
class TreeBuilder {
public:
    explicit TreeBuilder(std::string rootPath = "/root");

    NodeIndex folder(NodeIndex parent, std::string_view name, NodeFlags extra = {});
    NodeIndex file(NodeIndex parent, std::string_view name, std::uint64_t bytes, NodeFlags flags = {});
    /// One more name of the file that has this inode.
    NodeIndex hardLink(NodeIndex parent, std::string_view name, std::uint64_t bytes, std::uint64_t inode);

    /// The finalised tree.
    FileTree build();

    FileTree tree; ///< for what has no verb here

private:
    NodeIndex add(NodeIndex parent, std::string_view name, std::uint64_t bytes, NodeFlags flags,
                  std::uint64_t inode, std::uint16_t links);

    std::uint64_t nextInode_ = 1000;
    std::vector<FileTree::HardLinkCandidate> candidates_;
};

/// The names of a folder's children in the order of its list.
std::vector<std::string> childNames(const FileTree& tree, NodeIndex folder);

} // namespace orbel::test
