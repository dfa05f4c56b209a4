#include "Find/LinkProber.h"

#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

namespace {

constexpr int mostLinks = 40; // as the system has it

TargetReport unknown(std::string reason) {
    return {.state = TargetState::unknown, .reason = std::move(reason)};
}

/// Takes the first name of a relative path; empty when there is none left.
std::string takeName(std::string& rest) {
    const auto begin = std::min(rest.find_first_not_of('/'), rest.size());
    const auto end = std::min(rest.find('/', begin), rest.size());
    auto name = rest.substr(begin, end - begin);
    rest.erase(0, end);
    return name;
}

bool isInAny(const std::vector<std::string>& folders, std::string_view path) {
    return std::ranges::any_of(folders, [&](const auto& folder) { return isPathInside(path, folder); });
}

} // namespace

LinkProber::LinkProber(const std::vector<platform::Mount>& mounts, platform::PassingPlaces places)
    : places_(std::move(places)) {
    for (const auto& mount : mounts) {
        mounted_.push_back(mount.path);
        if (mount.isNetwork)
            neverAsked_.insert(mount.path);
    }
}

std::optional<std::string> LinkProber::textOf(const std::string& link) {
    std::array<char, PATH_MAX> text{};
    const auto length = ::readlink(link.c_str(), text.data(), text.size());
    if (length < 0)
        return std::nullopt;
    return std::string(text.data(), static_cast<std::size_t>(length));
}

TargetReport LinkProber::probe(const std::string& link) {
    return follow(std::string(parentPath(link)), std::string(lastPathComponent(link)), link);
}

TargetReport LinkProber::probePath(const std::string& path, const std::string& from) {
    return follow("/", path, from);
}

TargetReport LinkProber::follow(std::string folder, std::string rest, const std::string& from) {
    for (int links = 0;;) {
        const auto name = takeName(rest);
        if (name.empty())
            return {.state = TargetState::present};
        if (name == ".")
            continue;
        if (name == "..") {
            folder = parentPath(folder); // no link is in it, so this is where the system goes too
            continue;
        }
        auto path = joinedPath(folder, name);
        if (neverAsked_.contains(path))
            return unknown("on a volume that is reached over a network or mounted on demand");
        if (knownFolders_.contains(path)) {
            folder = std::move(path);
            continue;
        }
        struct stat status {};
        if (::lstat(path.c_str(), &status) != 0) {
            if (errno == ENOENT || errno == ENOTDIR)
                return missingAt(path, from);
            return unknown(errno == EACCES ? "not allowed to look there" : "could not be read");
        }
        if (!S_ISLNK(status.st_mode)) {
            if (S_ISDIR(status.st_mode))
                knownFolders_.insert(path);
            folder = std::move(path);
            continue;
        }
        const auto text = textOf(path);
        if (!text || text->empty())
            return unknown("could not be read");
        if (++links > mostLinks)
            return unknown("leads in a circle");
        rest.insert(0, *text + "/");
        if (text->starts_with('/'))
            folder = "/";
    }
}

TargetReport LinkProber::missingAt(const std::string& path, const std::string& from) const {
    if (isInAny(places_.volumes, path)) {
        // Where its volume is there, what is missing is missing.
        const bool isMounted = std::ranges::any_of(mounted_, [&](const std::string& mount) {
            return isPathInside(path, mount) && isInAny(places_.volumes, mount);
        });
        return isMounted ? TargetReport{.state = TargetState::missing}
                         : unknown("on a volume that is not mounted");
    }
    // A shortcut that lies in such a place itself is as lasting as what it leads to.
    if (isInAny(places_.runtime, path) && !isInAny(places_.runtime, from))
        return unknown("in a place that is filled only while a program runs");
    return {.state = TargetState::missing};
}

} // namespace orbel
