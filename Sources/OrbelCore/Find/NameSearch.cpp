#include "Find/NameSearch.h"

#include "Util/TextMatcher.h"

#include <algorithm>
#include <tuple>

namespace orbel {

namespace {

/// How many names are looked at between two questions whether to go on.
constexpr NodeIndex namesAtOnce = 16'384;

/// The best of what is found so far.
class Best {
    auto isBetter() const {
        return [this](NodeIndex a, NodeIndex b) {
            return std::tuple(tree_.allocatedBytes[a], b) > std::tuple(tree_.allocatedBytes[b], a);
        };
    }

public:
    Best(const FileTree& tree, std::size_t most) : tree_(tree), most_(most) { nodes_.reserve(most + 1); }

    /// Whether a node of that size, later in the tree than all before, would be among them. Cheap: it spares
    /// most nodes the comparison of names.
    bool wants(std::uint64_t bytes) const {
        return nodes_.size() < most_ || bytes > tree_.allocatedBytes[nodes_.front()];
    }

    void add(NodeIndex node) {
        nodes_.push_back(node);
        std::ranges::push_heap(nodes_, isBetter());
        if (nodes_.size() > most_) {
            std::ranges::pop_heap(nodes_, isBetter());
            nodes_.pop_back();
        }
    }

    std::vector<NodeIndex> take() {
        std::ranges::sort_heap(nodes_, isBetter());
        return std::move(nodes_);
    }

private:
    const FileTree& tree_;
    std::size_t most_;
    std::vector<NodeIndex> nodes_; ///< a heap, the worst at its front
};

} // namespace

std::vector<NodeIndex> NameSearch::run(const FileTree& tree, std::string_view text, std::size_t most,
                                       const IsCancelled& isCancelled) {
    if (text.empty() || most == 0)
        return {};
    const TextMatcher matcher(text);
    const bool allAttached = tree.detachedFrom.empty();
    Best best(tree, most);
    for (NodeIndex node = 1; node < tree.count(); ++node) {
        if (node % namesAtOnce == 0 && isCancelled && isCancelled())
            return {};
        if (best.wants(tree.allocatedBytes[node]) && matcher.isIn(tree.nameBytes(node))
            && (allAttached || tree.isAttached(node)))
            best.add(node);
    }
    return best.take();
}

} // namespace orbel
