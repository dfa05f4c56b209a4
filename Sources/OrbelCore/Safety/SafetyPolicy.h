#pragma once

#include "Platform/Conventions.h"
#include "Platform/FileStatus.h"
#include "Platform/MountTable.h"
#include "Platform/Places.h"
#include "Safety/AllowedRoot.h"
#include "Safety/FileStamp.h"
#include "Safety/NeverTouch.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/PlaceRules.h"
#include "Safety/ProtectedContent.h"
#include "Safety/ProtectedPlaces.h"
#include "Safety/SafetyDecision.h"
#include "Safety/SteamLibrary.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// The gate for every move to the Trash and every put back. It never follows a link, never writes and never
/// throws: each failure of the file system becomes a refusal, in words that the user reads as they stand.
///
/// A value, built once for a home folder. What it knows of protected places is read at construction and then
/// immutable; check() and the reasons only read the disk, and may be called by any thread at once. A volume
/// that may not answer (of a network, of a user program) is never asked unless the home itself lies on it:
/// the mount table and the text of the path decide.
class SafetyPolicy {
public:
    static constexpr auto& leftoverFolders = PlaceRules::leftoverFolders;
    /// The refusal of what no rename can bring to the Trash.
    static constexpr std::string_view onAnotherVolume = "On another volume";

    struct Options {
        /// Absent: the platform's.
        std::optional<std::vector<std::string>> applicationFolders;
        /// The platform adds its own.
        std::vector<std::string> systemRoots{NeverTouch::defaultSystemRoots.begin(),
                                             NeverTouch::defaultSystemRoots.end()};
        PathCanonicalizer canonicalizer = PathCanonicalizer::shared();
        /// Whether this process may write a path. Absent: asks the system. May be called by any thread.
        std::function<bool(const std::string&)> isWritable;
        platform::Conventions conventions = platform::conventions();
        /// The platform's places for the real path of the home.
        std::function<platform::Places(const std::string&)> places = platform::places;
        /// Read anew at every check that needs it. May be called by any thread.
        std::function<platform::SharedMountTable()> mountTable = platform::sharedMountTable;
    };

    explicit SafetyPolicy(const std::string& home);
    SafetyPolicy(const std::string& home, Options options);

    /// Whether the item at `path` may be moved now. `expected` is the stamp recorded when it was scanned;
    /// absent skips the comparison.
    SafetyDecision check(const std::string& path, AllowedRoot root,
                         const std::optional<FileStamp>& expected) const;

    /// The same for one of many items of a list, with what checks of the others have seen of the folders
    /// above. Advice only: what is about to move is checked without.
    struct SeenFolders {
        PathResolver paths;
        KnownShapes shapes{};
        SteamLibraries games{};
    };
    SafetyDecision check(const std::string& path, AllowedRoot root, const std::optional<FileStamp>& expected,
                         SeenFolders& seen) const;
    /// For items that are asked about within a moment of each other.
    SeenFolders seenFolders() const { return {.paths = resolver()}; }

    /// Why a real path in visible form is protected, or absent.
    std::optional<std::string> protectionReason(const std::string& real,
                                                const std::optional<FileIdentity>& identity) const;

    /// Why a real path in visible form is outside the place allowed for its kind, or absent.
    std::optional<std::string> rootReason(const std::string& real, AllowedRoot root, bool isDirectory) const;

    /// Why an item may not be put back to where it came from, or absent.
    std::optional<std::string> restoreDestinationReason(const std::string& path, AllowedRoot root) const;
    std::optional<std::string> restoreDestinationReason(const std::string& path, AllowedRoot root,
                                                        PathResolver& paths) const;

    /// Why nothing at all is moved or put back for this home folder, or absent.
    const std::optional<std::string>& homeReason() const { return homeReason_; }

    // The same places as the checks above use, for real paths in visible form: see PlaceRules.
    bool isApplication(const std::string& path) const {
        return isApplicationPlace(path) && !isOutOfReach(path) && placeRules_.isApplication(path);
    }
    bool isApplicationPlace(std::string_view path) const { return placeRules_.isApplicationPlace(path); }
    bool isLeftoverPlace(std::string_view path) const { return placeRules_.isLeftoverPlace(path); }

    /// The real path of `path`, which may be relative, in visible form; absent when it cannot be resolved, or
    /// leads to where a question might never be answered.
    std::optional<std::string> canonical(const std::string& path) const;
    /// The same, with what `paths` has seen already.
    std::optional<std::string> canonical(const std::string& path, PathResolver& paths) const;

    /// For several paths of one question about the disk as it is now.
    PathResolver resolver() const;

    /// Whether asking about what lies at this path might never be answered, such as on a network volume;
    /// never so for the volume of the home. Such an item is on another volume, and nothing more is asked.
    bool isOutOfReach(const std::string& path) const;

    const std::string& homePath() const { return homePath_; }
    const std::vector<std::string>& neverTouchRoots() const { return protectedPlaces_.neverTouchRoots(); }
    const std::vector<std::string>& systemRoots() const { return protectedPlaces_.systemRoots(); }
    const std::vector<std::string>& applicationFolders() const { return placeRules_.applicationFolders(); }
    /// Folders whose contents are caches; not resolved again after construction.
    const std::vector<std::string>& cacheFolders() const { return placeRules_.cacheFolders(); }
    /// Folders of programs' own data, ~/Library and what is like it; real paths in visible form.
    std::vector<std::string> guardedFolders() const { return placeRules_.guardedFolders(); }
    /// Folders that stay although they may be empty, since settings name them; real paths in visible form.
    const std::vector<std::string>& namedFolders() const { return namedFolders_; }
    /// The folders that directly hold what was moved to the Trash; not resolved.
    const std::vector<std::string>& trashFolders() const { return trashFolders_; }
    /// Where programs keep what they make again; not resolved.
    const std::vector<platform::RebuildablePlace>& rebuildablePlaces() const { return rebuildablePlaces_; }
    const platform::Conventions& conventions() const { return conventions_; }
    const PathCanonicalizer& canonicalizer() const { return canonicalizer_; }

private:
    struct Prepared;
    explicit SafetyPolicy(Prepared prepared);

    bool isOnAnotherVolume(const std::string& path, const platform::FileStatus& status) const;
    std::optional<std::string> furtherReason(const std::string& path, const std::string& real,
                                             bool isDirectory) const;
    std::optional<std::string> mountReason(const std::string& real) const;

    PathCanonicalizer canonicalizer_;
    platform::Conventions conventions_;
    std::string homePath_;
    std::optional<std::string> homeReason_;
    std::optional<std::uint64_t> volumeDevice_; ///< absent disables the comparison of devices
    std::vector<std::string> namedFolders_;
    std::vector<std::string> trashFolders_;
    std::vector<platform::RebuildablePlace> rebuildablePlaces_;
    ProtectedPlaces protectedPlaces_;
    PlaceRules placeRules_;
    std::function<platform::SharedMountTable()> mountTable_;
};

} // namespace orbel
