#include "Commands/ListLimits.h"

#include "Commands/CommandOutput.h"
#include "Commands/CountOption.h"
#include "Commands/Request.h"

#include <algorithm>

namespace orbel {

ListLimits ListLimits::in(const Request& request, std::size_t top) {
    const auto depth = countOf(request, depthOption.name).value_or(1);
    if (depth < 1 || depth > deepest)
        finishWrongUsage("--depth takes a number from 1 to " + std::to_string(deepest));
    return {.top = top, .depth = depth, .minimumBytes = countOf(request, minBytesOption.name).value_or(0)};
}

std::span<const NodeIndex> ListLimits::shown(const FileTree& tree, NodeIndex folder) const {
    const auto all = tree.children(folder);
    const auto enough = std::ranges::partition_point(
        all, [&](NodeIndex child) { return tree.allocated(child) >= minimumBytes; });
    return all.first(std::min(top, static_cast<std::size_t>(enough - all.begin())));
}

} // namespace orbel
