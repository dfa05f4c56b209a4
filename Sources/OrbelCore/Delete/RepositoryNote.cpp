#include "Delete/RepositoryNote.h"

#include "Platform/GitRepository.h"
#include "Platform/Parallel.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/FolderShapes.h"
#include "Util/PathText.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace orbel {

namespace {

using Changes = platform::RepositoryState::Changes;

/// What of all repositories, or of one, is nowhere else.
struct Found {
    bool hasOwnCommits = false;
    Changes changes = Changes::none;
};

/// The ".git" folders and the bare repositories in a folder, itself included.
std::vector<NodeIndex> repositoriesIn(const FileTree& tree, NodeIndex folder) {
    std::vector<NodeIndex> found;
    std::vector<NodeIndex> open{folder};
    while (!open.empty()) {
        const NodeIndex node = open.back();
        open.pop_back();
        if (isGitRepository(tree, node)) {
            found.push_back(node);
            continue;
        }
        for (const NodeIndex child : tree.children(node))
            if (tree.isFolder(child))
                open.push_back(child);
    }
    return found;
}

Found ask(const FileTree& tree, NodeIndex repository) {
    const auto path = tree.path(repository, PathCanonicalizer::shared());
    const bool isBare = lastPathComponent(path) != ".git";
    const auto state = platform::repositoryState(path, isBare ? "" : std::string(parentPath(path)));
    return state ? Found{.hasOwnCommits = state->hasOwnCommits, .changes = state->changes} : Found{};
}

} // namespace

std::optional<std::string> repositoryNote(const FileTree& tree, NodeIndex folder) {
    constexpr std::size_t mostAsked = 24;
    if (!tree.isFolder(folder))
        return std::nullopt;
    const auto repositories = repositoriesIn(tree, folder);
    if (repositories.empty())
        return std::nullopt;
    const auto asked = std::min(repositories.size(), mostAsked);
    std::vector<Found> answers(asked);
    forEachTask(asked, [&](std::size_t i) { answers[i] = ask(tree, repositories[i]); });

    const bool hasOwnCommits = std::ranges::any_of(answers, &Found::hasOwnCommits);
    const auto changes = std::ranges::max(answers, {}, &Found::changes).changes;
    if (hasOwnCommits && changes == Changes::certain)
        return "Holds commits that are on no remote, and changes that are not committed";
    if (hasOwnCommits)
        return "Holds commits that are on no remote";
    if (changes == Changes::certain)
        return "Holds changes that are not committed";
    if (changes == Changes::possible)
        return "May hold changes that are not committed";
    if (asked < repositories.size())
        return "Holds " + std::to_string(repositories.size())
               + " Git repositories; not all were asked for commits that are on no remote";
    return std::nullopt;
}

bool isWorkFolder(const FileTree& tree, NodeIndex folder) {
    return std::ranges::any_of(tree.children(folder),
                               [&](NodeIndex child) { return tree.nameBytes(child) == ".git"; });
}

} // namespace orbel
