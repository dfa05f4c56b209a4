#include "Safety/PlaceRules.h"

#include "Platform/FileStatus.h"
#include "Platform/ProgramFile.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace orbel {

namespace {

/// Whether the first `count` names of a path and of a pattern agree; "*" agrees with any one name.
bool beginsLike(const std::vector<std::string_view>& path, const std::vector<std::string_view>& pattern,
                std::size_t count) {
    if (path.size() < count || pattern.size() < count)
        return false;
    for (std::size_t i = 0; i < count; ++i)
        if (pattern[i] != "*" && pattern[i] != path[i])
            return false;
    return true;
}

bool isStrictlyInside(std::string_view path, std::string_view folder) {
    return path.size() > folder.size() && RealPath::isInside(path, folder);
}

bool overlap(std::string_view one, std::string_view other) {
    return RealPath::isInside(one, other) || RealPath::isInside(other, one);
}

bool isAnyOf(const std::vector<std::string>& folders, std::string_view folder) {
    return std::ranges::find(folders, folder) != folders.end();
}

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

} // namespace

PlaceRules::PlaceRules(std::string homePath, Setup setup, const PathCanonicalizer& canonicalizer,
                       PathResolver& resolver)
    : homePath_(std::move(homePath)),
      programFolders_(std::move(setup.places.programFolders)),
      programFileFolders_(std::move(setup.places.programFileFolders)),
      furtherLeftoverFolders_(std::move(setup.places.leftoverFolders)),
      hiddenLeftoverFolders_(std::move(setup.places.hiddenLeftoverFolders)),
      fileManager_(setup.fileManager),
      notAnApplication_(setup.notAnApplication),
      isWritable_(std::move(setup.isWritable)) {
    std::ranges::move(setup.places.vendorFolders, std::back_inserter(furtherLeftoverFolders_));
    const auto inPlace = [&](const std::string& path) {
        return canonicalizer.visiblePath(resolver.resolve(path).path);
    };

    for (const auto& folder : setup.applicationFolders)
        applicationFolders_.push_back(inPlace(folder));

    guards_.push_back({.path = joinedPath(homePath_, "Library"),
                       .movable = {"Caches/*", "Logs/*"},
                       .refusal = "Inside Library: only Caches and Logs can be moved from here"});
    for (auto& guarded : setup.places.guardedFolders) {
        // The name as well as what it leads to: a link may become a folder while the program runs.
        std::vector<std::string> paths{standardizedPath(guarded.path)};
        if (auto resolved = inPlace(guarded.path); resolved != paths.front())
            paths.push_back(std::move(resolved));
        for (auto& path : paths)
            if (isStrictlyInside(path, homePath_)) {
                auto refusal =
                    "Inside " + tildePath(path, homePath_) + ": only caches can be moved from here";
                guards_.push_back(
                    {.path = std::move(path), .movable = guarded.movable, .refusal = std::move(refusal)});
            }
    }

    for (const auto& place : setup.places.cacheFolders) {
        auto folder = inPlace(place);
        const auto isTaken = [&](std::string_view other) { return overlap(folder, other); };
        if (isStrictlyInside(folder, homePath_) && std::ranges::none_of(guards_, isTaken, &Guard::path)
            && std::ranges::none_of(setup.neverTouchRoots, isTaken))
            cacheFolders_.push_back(std::move(folder));
    }
}

std::optional<std::string> PlaceRules::reason(const std::string& real, AllowedRoot root,
                                              bool isDirectory) const {
    switch (root) {
    case AllowedRoot::homeItem:
        return homeItemReason(real);
    case AllowedRoot::applicationBundle:
        return applicationReason(real, isDirectory);
    case AllowedRoot::leftover:
        break;
    }
    return leftoverReason(real);
}

std::vector<std::string> PlaceRules::guardedFolders() const {
    std::vector<std::string> folders;
    folders.reserve(guards_.size());
    for (const auto& guard : guards_)
        folders.push_back(guard.path);
    return folders;
}

std::optional<std::string> PlaceRules::homeItemReason(std::string_view real) const {
    if (!RealPath::isInside(real, homePath_))
        return "Outside the home folder";
    if (pathComponents(real.substr(homePath_.size())).size() < 2)
        return "Too close to the home folder";
    for (const auto& guard : guards_)
        if (auto reason = guardReason(guard, real))
            return reason;
    return cacheReason(real);
}

std::optional<std::string> PlaceRules::guardReason(const Guard& guard, std::string_view real) const {
    if (isStrictlyInside(guard.path, real))
        return "Contains protected data: " + tildePath(guard.path, homePath_);
    if (!RealPath::isInside(real, guard.path))
        return std::nullopt;
    const auto below = pathComponents(real.substr(guard.path.size()));
    const bool isMovable = std::ranges::any_of(guard.movable, [&](const std::string& folder) {
        const auto pattern = pathComponents(folder);
        return beginsLike(below, pattern, pattern.size());
    });
    return isMovable ? std::nullopt : std::optional(guard.refusal);
}

std::optional<std::string> PlaceRules::cacheReason(std::string_view real) const {
    for (const auto& folder : cacheFolders_) {
        if (real == folder)
            return "Only what is inside " + tildePath(folder, homePath_) + " can be moved";
        if (RealPath::isInside(folder, real))
            return "Contains the cache folder " + tildePath(folder, homePath_);
    }
    return std::nullopt;
}

std::optional<std::string> PlaceRules::applicationReason(const std::string& real, bool isDirectory) const {
    if (isDirectory && real.ends_with(".app"))
        return bundleReason(real);
    if (!isProgram(real, isDirectory))
        return "Not an application bundle";
    // Only its owner may take a folder along with all that is in it.
    const auto status = platform::fileStatus(real);
    if (!status || status->owner != ::geteuid())
        return "Belongs to another user";
    return needsAdminReason(real);
}

std::optional<std::string> PlaceRules::bundleReason(const std::string& real) const {
    if (!isBundlePlace(real))
        return "Not in an Applications folder";
    if (!exists(joinedPath(real, "Contents/Info.plist")))
        return std::string(notAnApplication_);
    return needsAdminReason(real);
}

std::optional<std::string> PlaceRules::needsAdminReason(const std::string& real) const {
    if (!isWritable_(real) || !isWritable_(std::string(parentPath(real))))
        return "Needs admin: remove it in " + std::string(fileManager_);
    return std::nullopt;
}

std::optional<std::string> PlaceRules::leftoverReason(std::string_view real) const {
    return isLeftoverPlace(real) ? std::nullopt : std::optional<std::string>("Not in a leftover folder");
}

bool PlaceRules::isApplicationPlace(std::string_view path) const {
    const auto folder = parentPath(path);
    return (path.ends_with(".app") && isBundlePlace(path)) || isAnyOf(programFolders_, folder)
           || isAnyOf(programFileFolders_, folder);
}

bool PlaceRules::isApplication(const std::string& path) const {
    if (path.ends_with(".app") && isBundlePlace(path))
        return true;
    const auto status = platform::fileStatus(path);
    if (!status || status->type == platform::FileType::symbolicLink)
        return false;
    return isProgram(path, status->type == platform::FileType::directory);
}

bool PlaceRules::isBundlePlace(std::string_view path) const {
    const auto parent = parentPath(path);
    return isAnyOf(applicationFolders_, parent)
           || (!parent.ends_with(".app") && isAnyOf(applicationFolders_, parentPath(parent)));
}

bool PlaceRules::isProgram(const std::string& path, bool isDirectory) const {
    if (isDirectory)
        return isAnyOf(programFolders_, parentPath(path)) && !lastPathComponent(path).starts_with('.');
    return isAnyOf(programFileFolders_, parentPath(path)) && platform::isSelfContainedProgram(path);
}

bool PlaceRules::isLeftoverPlace(std::string_view path) const {
    const auto folder = parentPath(path);
    const bool isHidden = isAnyOf(hiddenLeftoverFolders_, folder) && lastPathComponent(path).starts_with('.');
    return (isHidden || isLeftoverFolder(folder)) && !isSharedByPrograms(path);
}

bool PlaceRules::isLeftoverFolder(std::string_view folder) const {
    const auto path = pathComponents(folder);
    return std::ranges::any_of(leftoverFolders,
                               [&](std::string_view name) {
                                   return folder == joinedPath(joinedPath(homePath_, "Library"), name);
                               })
           || std::ranges::any_of(furtherLeftoverFolders_, [&](const std::string& further) {
                  const auto pattern = pathComponents(further);
                  return path.size() == pattern.size() && beginsLike(path, pattern, path.size());
              });
}

/// A folder that all programs share is no leftover of one, although it lies in another such folder.
bool PlaceRules::isSharedByPrograms(std::string_view path) const {
    const auto names = pathComponents(path);
    return std::ranges::any_of(furtherLeftoverFolders_, [&](const std::string& folder) {
        return beginsLike(names, pathComponents(folder), names.size());
    });
}

} // namespace orbel
