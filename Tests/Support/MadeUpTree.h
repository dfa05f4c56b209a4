#pragma once

#include "Support/TreeBuilder.h"

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace orbel::test {

/// A tree with all that a scan can put into one, in a shape that depends on the seed.
class MadeUpTree {
public:
    explicit MadeUpTree(unsigned seed);

    FileTree tree() { return builder_.build(); }

private:
    std::size_t below(std::size_t limit);
    std::string name();

    std::mt19937 random_;
    int count_ = 0;
    TreeBuilder builder_;
};

/// All that is known of a tree, node after node in the order in which they are shown.
std::vector<std::string> described(const FileTree& tree);

} // namespace orbel::test
