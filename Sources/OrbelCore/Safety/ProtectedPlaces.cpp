#include "Safety/ProtectedPlaces.h"

#include "Safety/NeverTouch.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace orbel {

ProtectedPlaces::ProtectedPlaces(std::string homePath, Lists lists, const PathCanonicalizer& canonicalizer,
                                 PathResolver& resolver)
    : homePath_(std::move(homePath)),
      systemRoots_(std::move(lists.systemRoots)),
      protectedBySystem_(lists.protectedBySystem) {
    for (const auto& root : lists.homeRoots)
        neverTouchRoots_.push_back(canonicalizer.visiblePath(root));
    for (const auto& place : lists.furtherRoots) {
        auto root = canonicalizer.visiblePath(resolver.resolve(place).path);
        // A link to the home folder, or to what holds it, would protect everything: such a
        // place means nothing.
        if (RealPath::isInside(homePath_, root)
            || std::ranges::find(neverTouchRoots_, root) != neverTouchRoots_.end())
            continue;
        if (std::ranges::find(lists.pictures, place) != lists.pictures.end())
            pictures_.push_back(root);
        neverTouchRoots_.push_back(std::move(root));
    }
    for (const auto& root : neverTouchRoots_)
        recordIdentities(root, resolver);
}

void ProtectedPlaces::recordIdentities(const std::string& root, const PathResolver& resolver) {
    const auto identityOf = [&](const std::string& path) {
        return resolver.isOutOfReach(path) ? std::nullopt : FileIdentity::of(path);
    };
    if (const auto identity = identityOf(root))
        neverTouchIdentities_.emplace(*identity, root);
    if (!RealPath::isInside(root, homePath_))
        return;
    std::string folder = root;
    while (folder.resize(parentPath(folder).size()), folder.size() > homePath_.size())
        if (const auto identity = identityOf(folder))
            protectedAncestorIdentities_.emplace(*identity, root);
}

std::optional<std::string> ProtectedPlaces::reason(const std::string& real,
                                                   const std::optional<FileIdentity>& identity) const {
    std::vector<SeenObject> onPath;
    for (std::string path = real; path.size() > 1; path.resize(parentPath(path).size()))
        if (const auto there = FileIdentity::of(path))
            onPath.push_back({.device = there->device, .inode = there->inode});
    return reason(real, identity, onPath);
}

std::optional<std::string> ProtectedPlaces::reason(const std::string& real,
                                                   const std::optional<FileIdentity>& identity,
                                                   std::span<const SeenObject> onPath) const {
    if (auto reason = reasonByPath(real))
        return reason;
    if (identity)
        if (auto reason = reasonByIdentity(*identity))
            return reason;
    for (const auto [device, inode] : onPath | std::views::reverse)
        if (const auto root = neverTouchIdentities_.find({.device = device, .inode = inode});
            root != neverTouchIdentities_.end())
            return protectedRoot(root->second);
    if (NeverTouch::hasProtectedComponent(real))
        return "Protected library or backup";
    if (NeverTouch::isAppleOwned(real, homePath_))
        return "Protected: Apple app data";
    if (platform::isSystemRestricted(real))
        return std::string(protectedBySystem_);
    return std::nullopt;
}

std::optional<std::string> ProtectedPlaces::reasonByPath(const std::string& real) const {
    for (const auto& root : systemRoots_)
        if (RealPath::isInside(real, root))
            return "Protected: system location " + root;
    for (const auto& root : neverTouchRoots_) {
        if (RealPath::isInside(real, root))
            return protectedRoot(root);
        if (RealPath::isInside(root, real))
            return containsRoot(root);
    }
    return std::nullopt;
}

std::optional<std::string> ProtectedPlaces::reasonByIdentity(const FileIdentity& identity) const {
    if (const auto root = neverTouchIdentities_.find(identity); root != neverTouchIdentities_.end())
        return protectedRoot(root->second);
    if (const auto root = protectedAncestorIdentities_.find(identity);
        root != protectedAncestorIdentities_.end())
        return containsRoot(root->second);
    return std::nullopt;
}

std::string ProtectedPlaces::protectedRoot(std::string_view root) const {
    const auto path = tildePath(root, homePath_);
    return std::ranges::find(pictures_, root) == pictures_.end() ? "Protected: " + path
                                                                 : "Protected: your pictures (" + path + ")";
}

std::string ProtectedPlaces::containsRoot(std::string_view root) const {
    return "Contains protected data: " + tildePath(root, homePath_);
}

} // namespace orbel
