#include "Find/LinkProber.h"

#include "Util/PathText.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace orbel {

namespace {

TargetReport unknown(std::string reason) {
    return {.state = TargetState::unknown, .reason = std::move(reason)};
}

bool isInAny(const std::vector<std::string>& folders, std::string_view path) {
    return std::ranges::any_of(folders, [&](const auto& folder) { return isPathInside(path, folder); });
}

} // namespace

LinkProber::LinkProber(const std::vector<platform::Mount>& mounts, platform::PassingPlaces places,
                       std::span<const std::string> trusted)
    : resolver_(platform::mountPointsOutOfReach(mounts, trusted)), places_(std::move(places)) {
    for (const auto& mount : mounts)
        mounted_.push_back(mount.path);
}

TargetReport LinkProber::probe(const std::string& link) {
    return reportOf(resolver_.resolve(link), link);
}

TargetReport LinkProber::probePath(const std::string& path, const std::string& from) {
    return reportOf(resolver_.resolve(path), from);
}

TargetReport LinkProber::reportOf(const ResolvedPath& resolved, const std::string& from) const {
    using enum ResolvedPath::State;
    switch (resolved.state) {
    case found:
        return {.state = TargetState::present};
    case missing:
        return missingAt(resolved.path, from);
    case outOfReach:
        return unknown("on a volume that is reached over a network or mounted on demand");
    case circular:
        return unknown("leads in a circle");
    case failed:
        break;
    }
    return unknown(resolved.error == EACCES ? "not allowed to look there" : "could not be read");
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
