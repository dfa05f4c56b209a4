#include "Safety/SafetyPolicy.h"

#include "Platform/DirectoryReader.h"
#include "Safety/ReachReason.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <filesystem>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace orbel {

namespace {

/// A slash or a dot after the name of a link would make the system follow it.
std::string withoutTrailingDots(std::string_view path) {
    while (path.size() > 1 && (path.ends_with('/') || path.ends_with("/.")))
        path.remove_suffix(1);
    return std::string(path);
}

bool mayWrite(const std::string& path) {
    return ::access(path.c_str(), W_OK) == 0;
}

std::optional<std::string> homeReasonFor(const std::string& homePath, bool hasFurtherRefusals) {
    static constexpr auto gone = "The home folder cannot be found, so nothing is moved or put back";
    if (!homePath.starts_with('/'))
        return gone;
    if (!hasFurtherRefusals)
        return std::nullopt;
    if (homePath == "/")
        return "The home folder is the root folder, so nothing is moved or put back";
    if (!isValidUtf8(homePath))
        return "The home folder’s path is not valid text, so nothing is moved or put back";
    const auto status = platform::fileStatus(homePath);
    if (!status || status->type != platform::FileType::directory)
        return gone;
    // Run with another user's rights, this would leave a journal and a Trash that their owner cannot write.
    if (status->owner != ::geteuid())
        return "The home folder belongs to another user, so nothing is moved or put back";
    return std::nullopt;
}

} // namespace

/// What several members are built from, worked out once.
struct SafetyPolicy::Prepared {
    Prepared(const std::string& home, Options given)
        : options(std::move(given)),
          homePath(
              options.canonicalizer.visiblePath(RealPath::resolve(home).value_or(standardizedPath(home)))),
          resolver(platform::mountPointsOutOfReach(*options.mountTable(), std::span(&homePath, 1))),
          neverTouch(NeverTouch::roots(home, resolver)),
          places(options.places(homePath)) {
        options.systemRoots.insert(options.systemRoots.end(), places.systemRoots.begin(),
                                   places.systemRoots.end());
        if (!options.isWritable)
            options.isWritable = mayWrite;
    }

    Options options;
    std::string homePath;
    PathResolver resolver;
    std::vector<std::string> neverTouch;
    platform::Places places;
};

SafetyPolicy::SafetyPolicy(const std::string& home) : SafetyPolicy(home, Options()) {}

SafetyPolicy::SafetyPolicy(const std::string& home, Options options)
    : SafetyPolicy(Prepared(home, std::move(options))) {}

SafetyPolicy::SafetyPolicy(Prepared prepared)
    : canonicalizer_(std::move(prepared.options.canonicalizer)),
      conventions_(prepared.options.conventions),
      homePath_(std::move(prepared.homePath)),
      homeReason_(homeReasonFor(homePath_, conventions_.hasFurtherRefusals)),
      trashFolders_(prepared.places.trashFolders),
      rebuildablePlaces_(prepared.places.rebuildablePlaces),
      protectedPlaces_(homePath_,
                       {.systemRoots = std::move(prepared.options.systemRoots),
                        .homeRoots = std::move(prepared.neverTouch),
                        .furtherRoots = prepared.places.neverTouch,
                        .pictures = prepared.places.pictureFolders,
                        .protectedBySystem = conventions_.protectedBySystem},
                       canonicalizer_, prepared.resolver),
      placeRules_(homePath_,
                  {.places = prepared.places,
                   .applicationFolders =
                       prepared.options.applicationFolders.value_or(prepared.places.applicationFolders),
                   .neverTouchRoots = protectedPlaces_.neverTouchRoots(),
                   .fileManager = conventions_.fileManager,
                   .notAnApplication = conventions_.notAnApplication,
                   .isWritable = std::move(prepared.options.isWritable)},
                  canonicalizer_, prepared.resolver),
      mountTable_(std::move(prepared.options.mountTable)) {
    for (const auto& folder : prepared.places.namedFolders)
        namedFolders_.push_back(canonicalizer_.visiblePath(prepared.resolver.resolve(folder).path));
    if (const auto status = platform::fileStatus(homePath_))
        volumeDevice_ = status->device;
}

SafetyDecision SafetyPolicy::check(const std::string& path, AllowedRoot root,
                                   const std::optional<FileStamp>& expected) const {
    auto seen = seenFolders();
    return check(path, root, expected, seen);
}

SafetyDecision SafetyPolicy::check(const std::string& path, AllowedRoot root,
                                   const std::optional<FileStamp>& expected, SeenFolders& seen) const {
    if (homeReason_)
        return SafetyDecision::refused(*homeReason_);
    const auto item = withoutTrailingDots(path);
    const auto resolved = seen.paths.resolve(item, PathResolver::Last::keep);
    if (resolved.state == ResolvedPath::State::outOfReach)
        return SafetyDecision::refused(std::string(onAnotherVolume));
    const auto status = platform::fileStatus(item);
    if (!status)
        return SafetyDecision::refused(reachReason(item).value_or("Already gone"));
    if (status->type == platform::FileType::symbolicLink)
        return SafetyDecision::refused("Is a symbolic link; links are never followed for deletion");
    if (!resolved.isFound())
        return SafetyDecision::refused(reachReason(item).value_or("Could not resolve the real path"));
    const auto real = canonicalizer_.visiblePath(resolved.path);
    const auto current = FileStamp::of(*status);
    if (expected && !expected->isUnchanged(current))
        return SafetyDecision::refused("Changed since the scan — scan again");
    if (isOnAnotherVolume(real, *status))
        return SafetyDecision::refused(std::string(onAnotherVolume));
    if (real == "/" || real == homePath_)
        return SafetyDecision::refused("Refusing to delete the root or home folder");
    if (auto reason = protectedPlaces_.reason(real, current.identity, resolved.objects))
        return SafetyDecision::refused(std::move(*reason));
    // Not a matter of what may be put back: what left such a place before may return to it.
    if (auto reason = ProtectedContent::reason(real, current.isDirectory, homePath_, seen.shapes))
        return SafetyDecision::refused(std::move(*reason));
    if (auto reason = rootReason(real, root, current.isDirectory))
        return SafetyDecision::refused(std::move(*reason));
    if (conventions_.hasFurtherRefusals)
        if (auto reason = furtherReason(item, real, current.isDirectory))
            return SafetyDecision::refused(std::move(*reason));
    return SafetyDecision::allowed(real, current);
}

std::optional<std::string> SafetyPolicy::protectionReason(const std::string& real,
                                                          const std::optional<FileIdentity>& identity) const {
    return protectedPlaces_.reason(real, identity);
}

std::optional<std::string> SafetyPolicy::rootReason(const std::string& real, AllowedRoot root,
                                                    bool isDirectory) const {
    return placeRules_.reason(real, root, isDirectory);
}

std::optional<std::string> SafetyPolicy::restoreDestinationReason(const std::string& path,
                                                                  AllowedRoot root) const {
    auto paths = resolver();
    return restoreDestinationReason(path, root, paths);
}

std::optional<std::string> SafetyPolicy::restoreDestinationReason(const std::string& path, AllowedRoot root,
                                                                  PathResolver& paths) const {
    if (homeReason_)
        return homeReason_;
    const auto name = lastPathComponent(path);
    const auto folder = paths.resolve(parentPath(path));
    // A path that names no item of a folder could only come from a journal that was edited by hand.
    if (!folder.isFound() || name.empty() || name == "/" || name == "." || name == ".."
        || name.find('\0') != std::string::npos)
        return "The original folder no longer exists or moved";
    const auto destination = joinedPath(canonicalizer_.visiblePath(folder.path), name);
    if (const auto reason = protectedPlaces_.reason(destination, std::nullopt, folder.objects))
        return "Cannot restore to a protected location (" + *reason + ")";
    if (root == AllowedRoot::applicationBundle) {
        if (!placeRules_.isApplicationPlace(destination))
            return "Cannot restore there: not an Applications folder";
    } else if (const auto reason = rootReason(destination, root, false)) {
        return "Cannot restore there: " + *reason;
    }
    return std::nullopt;
}

PathResolver SafetyPolicy::resolver() const {
    return PathResolver(platform::mountPointsOutOfReach(*mountTable_(), std::span(&homePath_, 1)));
}

std::optional<std::string> SafetyPolicy::canonical(const std::string& path) const {
    auto paths = resolver();
    return canonical(path, paths);
}

std::optional<std::string> SafetyPolicy::canonical(const std::string& path, PathResolver& paths) const {
    std::error_code error;
    const auto absolute =
        path.starts_with('/') ? path : joinedPath(std::filesystem::current_path(error).native(), path);
    const auto resolved = paths.resolve(absolute);
    return resolved.isFound() ? std::optional(canonicalizer_.visiblePath(resolved.path)) : std::nullopt;
}

bool SafetyPolicy::isOutOfReach(const std::string& path) const {
    const auto points = platform::mountPointsOutOfReach(*mountTable_(), std::span(&homePath_, 1));
    return !points.empty()
           && PathResolver(points).resolve(path, PathResolver::Last::keep).state
                  == ResolvedPath::State::outOfReach;
}

bool SafetyPolicy::isOnAnotherVolume(const std::string& path, const platform::FileStatus& status) const {
    if (!volumeDevice_ || status.device == *volumeDevice_)
        return false;
    if (status.type == platform::FileType::directory)
        return true;
    // On overlay file systems a file shows the device of the layer that holds it, while folders show the one
    // of the whole. Then the mount tells, together with the folder around: in a subvolume both folder and
    // file differ.
    const auto folder = platform::fileStatus(std::string(parentPath(path)));
    const auto fileMeasure = platform::measureEntry(-1, path.c_str());
    const auto homeMeasure = platform::measureEntry(-1, homePath_.c_str());
    return !folder || folder->device != *volumeDevice_ || !fileMeasure || !homeMeasure
           || homeMeasure->place.mountId == 0 || fileMeasure->place.mountId != homeMeasure->place.mountId;
}

std::optional<std::string> SafetyPolicy::furtherReason(const std::string& path, const std::string& real,
                                                       bool isDirectory) const {
    if (!isValidUtf8(path) || !isValidUtf8(real))
        return "Its name is not valid text, so it could not be put back";
    const auto item = platform::measureEntry(-1, real.c_str());
    const auto home = platform::measureEntry(-1, homePath_.c_str());
    if (!item || !home)
        return "Already gone";
    // The same disk mounted a second time shows the same device, and no move crosses from one
    // mount to another.
    if (item->place.mountId != home->place.mountId)
        return std::string(onAnotherVolume);
    return isDirectory ? mountReason(real) : std::nullopt;
}

std::optional<std::string> SafetyPolicy::mountReason(const std::string& real) const {
    // Moving a folder takes along what is mounted inside it, and emptying the Trash would then delete that.
    const auto mounts = mountTable_();
    if (mounts->empty())
        return "Could not read which volumes are mounted";
    for (const auto& mount : *mounts)
        if (const auto path = canonicalizer_.visiblePath(mount.path); RealPath::isInside(path, real))
            return "Contains another volume: " + tildePath(path, homePath_);
    return std::nullopt;
}

} // namespace orbel
