#include "Scan/FolderShapes.h"

#include "Platform/Parallel.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <mutex>

namespace orbel {

namespace {

/// Ranges below this many nodes are not worth a thread.
constexpr std::size_t parallelGrain = 64 * 1024;

class NamesInTree final : public FolderShape::Names {
public:
    NamesInTree(const FileTree& tree, NodeIndex folder) : tree_(tree), children_(tree.children(folder)) {}

    bool has(const FolderShape::Part& part) const override {
        return std::ranges::any_of(children_, [&](NodeIndex child) {
            return tree_.nameBytes(child) == part.name && tree_.isFolder(child) == part.isFolder;
        });
    }
    bool hasBeginning(std::string_view beginning) const override {
        return std::ranges::any_of(
            children_, [&](NodeIndex child) { return tree_.nameBytes(child).starts_with(beginning); });
    }

private:
    const FileTree& tree_;
    std::span<const NodeIndex> children_;
};

std::string_view nameOfFolderAbove(const FileTree& tree, NodeIndex folder) {
    if (folder == 0)
        return lastPathComponent(parentPath(tree.rootPath));
    const auto above = tree.parent(folder);
    return !above || *above == 0 ? lastPathComponent(tree.rootPath) : tree.nameBytes(*above);
}

bool beginsAShape(std::string_view name) {
    return std::ranges::any_of(FolderShape::all(),
                               [name](const FolderShape& shape) { return shape.parts.front().name == name; });
}

} // namespace

bool isVersionControlName(std::string_view name) {
    constexpr auto names =
        std::to_array<std::string_view>({".git", ".hg", ".svn", ".bzr", ".jj", ".pijul", "_darcs", "CVS"});
    return std::ranges::find(names, name) != names.end();
}

bool isGitRepository(const FileTree& tree, NodeIndex folder) {
    return FolderShape::gitRepository().matches(NamesInTree(tree, folder), nameOfFolderAbove(tree, folder));
}

std::vector<NodeIndex> nodesNamed(const FileTree& tree, const std::function<bool(std::string_view)>& passes) {
    std::mutex mutex;
    std::vector<NodeIndex> found;
    forEachRange(tree.count(), parallelGrain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = std::max<std::size_t>(begin, 1); i < end; ++i) {
            const auto node = static_cast<NodeIndex>(i);
            if (passes({tree.names.data() + tree.nameStart[node], tree.nameLength[node]})) {
                const std::scoped_lock lock(mutex);
                found.push_back(node);
            }
        }
    });
    std::ranges::sort(found);
    return found;
}

std::vector<ShapedFolder> shapedFolders(const FileTree& tree) {
    std::vector<ShapedFolder> found;
    for (const NodeIndex part : nodesNamed(tree, beginsAShape)) {
        const auto folder = tree.parent(part);
        if (!folder)
            continue;
        const NamesInTree names(tree, *folder);
        for (const auto& shape : FolderShape::all())
            if (shape.parts.front().name == tree.nameBytes(part)
                && shape.matches(names, nameOfFolderAbove(tree, *folder)))
                found.push_back({.node = *folder, .shape = &shape});
    }
    return found;
}

} // namespace orbel
