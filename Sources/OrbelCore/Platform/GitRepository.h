#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orbel::platform {

/// What a Git repository may hold that is nowhere else.
struct RepositoryState {
    enum class Changes : std::uint8_t {
        none,
        possible, ///< a file was written since, perhaps with the same content
        certain
    };

    bool hasOwnCommits = false; ///< on a branch or stashed, and on no remote
    Changes changes = Changes::none;

    bool operator==(const RepositoryState&) const = default;
};

/// Asks the system's git about the repository in `gitFolder`, a ".git" or a bare one, without writing and
/// without running anything that the repository's settings name. `workFolder`: where its files are; empty for
/// a bare one. Absent without git, and for a repository that it does not read, such as another user's. Blocks
/// for some milliseconds, and for 10 seconds at most for each of a few questions.
std::optional<RepositoryState> repositoryState(const std::string& gitFolder, const std::string& workFolder);

/// Which of these paths, relative to `workFolder`, the repository's rules leave out of it; not those with a
/// quote, a backslash or a control character in them. Absent as above.
std::optional<std::vector<std::string>> ignoredPaths(const std::string& gitFolder,
                                                     const std::string& workFolder,
                                                     const std::vector<std::string>& paths);

} // namespace orbel::platform
