#include "Platform/GitRepository.h"

namespace orbel::platform {

// The system's git is a stand-in that offers to install developer tools when it is first called.
std::optional<RepositoryState> repositoryState(const std::string&, const std::string&) {
    return std::nullopt;
}

std::optional<std::vector<std::string>> ignoredPaths(const std::string&, const std::string&,
                                                     const std::vector<std::string>&) {
    return std::nullopt;
}

} // namespace orbel::platform
