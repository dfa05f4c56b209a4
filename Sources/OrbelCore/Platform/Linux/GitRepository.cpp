#include "Platform/GitRepository.h"

#include "Platform/FileStatus.h"
#include "Platform/Linux/Portable/GitIndexList.h"
#include "Platform/Linux/ProgramOutput.h"
#include "Util/PathText.h"

#include <algorithm>
#include <ranges>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace orbel::platform {

namespace {

using Changes = RepositoryState::Changes;

/// A repository may come from anywhere, and its settings can name programs: hooks, a monitor of its files,
/// ways to fetch missing objects. None of the questions asked here compares contents, because that would
/// run its filters.
class Git {
public:
    Git(const std::string& gitFolder, const std::string& workFolder)
        // Where its folder is the current one, git takes paths as they are in the repository.
        : words_{"git",
                 "-C",
                 workFolder.empty() ? gitFolder : workFolder,
                 "--no-optional-locks",
                 "-c",
                 "core.fsmonitor=false",
                 "-c",
                 "core.hooksPath=/dev/null",
                 "-c",
                 "core.excludesFile=/dev/null",
                 "-c",
                 "core.quotePath=false",
                 "-c",
                 "protocol.allow=never",
                 "--git-dir=" + gitFolder} {
        if (!workFolder.empty())
            words_.push_back("--work-tree=" + workFolder);
    }

    std::optional<ProgramEnd> ask(std::initializer_list<const char*> question,
                                  std::span<const std::string> operands = {}) const {
        auto words = words_;
        words.insert(words.end(), question.begin(), question.end());
        words.insert(words.end(), operands.begin(), operands.end());
        return runProgram(words, {"GIT_CONFIG_NOSYSTEM=1", "GIT_NO_LAZY_FETCH=1"});
    }

    /// Regardless of its exit status.
    std::optional<std::string> answer(std::initializer_list<const char*> question) const {
        auto end = ask(question);
        return end ? std::optional(std::move(end->output)) : std::nullopt;
    }

private:
    std::vector<std::string> words_;
};

Changes changesSince(const std::vector<GitIndexEntry>& index, const std::string& workFolder) {
    auto changes = Changes::none;
    for (const auto& entry : index) {
        struct stat now {};
        const bool isThere = ::lstat(joinedPath(workFolder, entry.path).c_str(), &now) == 0;
        if (entry.isSubmodule || (!isThere && entry.isSparse))
            continue;
        // The index keeps the lower 32 bits of a size.
        if (!isThere || static_cast<std::uint32_t>(now.st_size) != entry.size)
            return Changes::certain;
        if (now.st_mtim.tv_sec != entry.modifiedSeconds)
            changes = Changes::possible;
    }
    return changes;
}

} // namespace

std::optional<RepositoryState> repositoryState(const std::string& gitFolder, const std::string& workFolder) {
    const Git git(gitFolder, workFolder);
    // Without a wildcard, --glob would only take what is below refs/stash.
    const auto count = git.answer(
        {"rev-list", "--count", "--max-count=1", "--branches", "--glob=refs/stas[h]", "--not", "--remotes"});
    if (!count || count->empty())
        return std::nullopt;
    RepositoryState state{.hasOwnCommits = !count->starts_with('0')};
    if (workFolder.empty())
        return state;
    const auto head = git.answer({"rev-parse", "--verify", "--quiet", "HEAD"});
    const auto staged = git.answer({"diff-index", "--cached", "--name-only", "-z", "HEAD", "--"});
    const auto added = git.answer(
        {"ls-files", "--others", "--exclude-standard", "--directory", "--no-empty-directory", "-z"});
    const auto index = gitIndexEntries(git.answer({"ls-files", "--debug", "-t", "-s", "-z"}).value_or(""));
    const bool isNeverCommitted = head && head->empty() && !index.empty();
    if ((staged && !staged->empty()) || (added && !added->empty()) || isNeverCommitted)
        state.changes = Changes::certain;
    else
        state.changes = changesSince(index, workFolder);
    return state;
}

std::optional<std::vector<std::string>> ignoredPaths(const std::string& gitFolder,
                                                     const std::string& workFolder,
                                                     const std::vector<std::string>& paths) {
    constexpr std::size_t mostAtOnce = 200; // far below what a command line takes
    const Git git(gitFolder, workFolder);
    std::vector<std::string> ignored;
    for (std::span rest(paths); !rest.empty(); rest = rest.subspan(std::min(rest.size(), mostAtOnce))) {
        constexpr int someAre = 0;
        constexpr int noneIs = 1;
        const auto end = git.ask({"check-ignore", "--"}, rest.first(std::min(rest.size(), mostAtOnce)));
        if (!end || (end->status != someAre && end->status != noneIs))
            return std::nullopt;
        // One with a quote or a line break in it comes in quotes, and so counts as not ignored.
        for (const auto path : end->output | std::views::split('\n'))
            if (!path.empty())
                ignored.emplace_back(std::string_view(path));
    }
    return ignored;
}

} // namespace orbel::platform
