#include "Delete/ExclusionReason.h"

#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"

namespace orbel {

namespace {

constexpr auto isLeftOut = "Left out of measuring";

std::string holdsLeftOut(const std::string& path, bool isFolder, const std::string& home) {
    return (isFolder ? "Holds a folder left out of measuring: " : "Holds a file left out of measuring: ")
           + tildePath(path, home);
}

} // namespace

std::optional<std::string> exclusionReason(const FileTree& tree, NodeIndex node, const std::string& home) {
    const auto found = tree.excludedInside(node);
    if (!found)
        return std::nullopt;
    if (*found == node)
        return isLeftOut;
    return holdsLeftOut(tree.path(*found, PathCanonicalizer::shared()), tree.isFolder(*found), home);
}

std::optional<std::string> exclusionReason(const Exclusions& exclusions, const std::string& path,
                                           const std::string& home) {
    for (const auto& left : exclusions.paths) {
        if (isPathInside(path, left))
            return isLeftOut;
        if (isPathInside(left, path))
            return holdsLeftOut(left, true, home);
    }
    return std::nullopt;
}

} // namespace orbel
