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
std::string_view takeName(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of('/'), rest.size()));
    const auto name = rest.substr(0, rest.find('/'));
    rest.remove_prefix(name.size());
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
    std::string behindLink; // owns what `rest` views once a link was followed
    std::string_view rest = path;
    std::vector<SeenObject> objects;
    const auto stoppedAt = [&](ResolvedPath::State state, const std::string& at, int error = 0) {
        return ResolvedPath{.state = state,
                            .path = standardizedPath(joinedPath(at, rest)),
                            .error = error,
                            .objects = objects};
    };
    if (!path.starts_with('/'))
        return {.state = failed, .path = std::string(path), .error = EINVAL};
    // The system would silently cut the path off there.
    if (path.find('\0') != std::string_view::npos)
        return {.state = failed, .path = std::string(path), .error = EINVAL};
    for (int links = 0;;) {
        const auto name = takeName(rest);
        if (name.empty())
            return {.state = found, .path = std::move(real), .objects = std::move(objects)};
        if (name == ".")
            continue;
        if (name == "..") {
            real = parentPath(real); // no link is in it, so this is where the system goes too
            if (!objects.empty())
                objects.pop_back();
            continue;
        }
        auto here = joinedPath(real, name);
        if (const auto folder = folders_.find(here); folder != folders_.end()) {
            real = std::move(here);
            objects.push_back(folder->second);
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
            behindLink = joinedPath(*text, rest);
            rest = behindLink;
            if (text->starts_with('/')) {
                real = "/";
                objects.clear();
            }
            continue;
        }
        const SeenObject object{.device = static_cast<std::uint32_t>(status.st_dev), .inode = status.st_ino};
        if (S_ISDIR(status.st_mode))
            folders_.emplace(here, object);
        else if (!isLast)
            return stoppedAt(missing, here, ENOTDIR);
        real = std::move(here);
        objects.push_back(object);
    }
}

} // namespace orbel
