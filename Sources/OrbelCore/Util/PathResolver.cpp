#include "Util/PathResolver.h"

#include "Util/PathText.h"
#include "Util/ReadLink.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <sys/stat.h>

namespace orbel {

namespace {

constexpr int mostLinks = 40; // as the system has it

/// Takes the first name of a path; empty when there is none left.
std::string takeName(std::string& rest) {
    const auto begin = std::min(rest.find_first_not_of('/'), rest.size());
    const auto end = std::min(rest.find('/', begin), rest.size());
    auto name = rest.substr(begin, end - begin);
    rest.erase(0, end);
    return name;
}

bool hasNames(std::string_view rest) {
    return rest.find_first_not_of('/') != std::string_view::npos;
}

} // namespace

bool PathResolver::isOutOfReach(std::string_view path) const {
    return std::ranges::any_of(outOfReach_,
                               [path](const std::string& place) { return isPathInside(path, place); });
}

ResolvedPath PathResolver::resolve(std::string_view path, Last last) {
    using enum ResolvedPath::State;
    std::string real = "/";
    std::string rest(path);
    const auto stoppedAt = [&](ResolvedPath::State state, const std::string& at, int error = 0) {
        return ResolvedPath{.state = state, .path = standardizedPath(joinedPath(at, rest)), .error = error};
    };
    if (!path.starts_with('/'))
        return {.state = failed, .path = rest, .error = EINVAL};
    // The system would silently cut the path off there.
    if (path.find('\0') != std::string_view::npos)
        return {.state = failed, .path = rest, .error = EINVAL};
    for (int links = 0;;) {
        const auto name = takeName(rest);
        if (name.empty())
            return {.state = found, .path = std::move(real)};
        if (name == ".")
            continue;
        if (name == "..") {
            real = parentPath(real); // no link is in it, so this is where the system goes too
            continue;
        }
        auto here = joinedPath(real, name);
        if (folders_.contains(here)) {
            real = std::move(here);
            continue;
        }
        if (isOutOfReach(here))
            return stoppedAt(outOfReach, here);
        struct stat status {};
        if (::lstat(here.c_str(), &status) != 0) {
            const int error = errno;
            return stoppedAt(error == ENOENT || error == ENOTDIR ? missing : failed, here, error);
        }
        const bool isLast = !hasNames(rest);
        if (S_ISLNK(status.st_mode) && (!isLast || last == Last::follow)) {
            const auto text = linkText(here);
            if (!text || text->empty())
                return stoppedAt(failed, here, EIO);
            if (++links > mostLinks)
                return stoppedAt(circular, here);
            rest = joinedPath(*text, rest);
            if (text->starts_with('/'))
                real = "/";
            continue;
        }
        if (S_ISDIR(status.st_mode))
            folders_.insert(here);
        else if (!isLast)
            return stoppedAt(missing, here, ENOTDIR);
        real = std::move(here);
    }
}

} // namespace orbel
