#pragma once

#include "Platform/Places.h"
#include "Safety/AllowedRoot.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/PathResolver.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// Where each kind of item may be moved from, and put back to. All that it knows of the disk is read at
/// construction; after that it is immutable and may be used by any thread, as far as `isWritable` may.
class PlaceRules {
public:
    /// Relative to the home's Library; `platform::Places` adds to them.
    static constexpr std::array<std::string_view, 13> leftoverFolders{"Application Support",
                                                                      "Caches",
                                                                      "Preferences",
                                                                      "Preferences/ByHost",
                                                                      "Containers",
                                                                      "Group Containers",
                                                                      "Saved Application State",
                                                                      "Logs",
                                                                      "HTTPStorages",
                                                                      "WebKit",
                                                                      "Cookies",
                                                                      "LaunchAgents",
                                                                      "Application Scripts"};

    struct Setup {
        platform::Places places;
        std::vector<std::string> applicationFolders;        ///< not resolved
        std::vector<std::string> neverTouchRoots;           ///< real paths in visible form
        std::string_view fileManager;                       ///< lives as long as the program
        std::string_view notAnApplication;                  ///< likewise; see platform::Conventions
        std::function<bool(const std::string&)> isWritable; ///< whether this process may write the path
    };

    /// `homePath`: the home's real path in visible form. `resolver` knows which places must not
    /// be asked about.
    PlaceRules(std::string homePath, Setup setup, const PathCanonicalizer& canonicalizer,
               PathResolver& resolver);

    /// Why `real`, a real path in visible form, is outside the place allowed for its kind; absent when
    /// it is inside.
    std::optional<std::string> reason(const std::string& real, AllowedRoot root, bool isDirectory) const;

    /// Whether an application of that path would lie where applications may be removed. It need not exist.
    bool isApplicationPlace(std::string_view path) const;

    /// Whether what lies at `path` is taken for an application: a bundle by its name and place; where
    /// programs are plain folders and files, also by what it is.
    bool isApplication(const std::string& path) const;

    /// Whether a leftover may have this path.
    bool isLeftoverPlace(std::string_view path) const;

    const std::vector<std::string>& applicationFolders() const { return applicationFolders_; }
    const std::vector<std::string>& cacheFolders() const { return cacheFolders_; }
    std::vector<std::string> guardedFolders() const;

private:
    struct Guard {
        std::string path; ///< real path in visible form
        std::vector<std::string> movable;
        std::string refusal;
    };

    std::optional<std::string> homeItemReason(std::string_view real) const;
    std::optional<std::string> guardReason(const Guard& guard, std::string_view real) const;
    std::optional<std::string> cacheReason(std::string_view real) const;
    std::optional<std::string> applicationReason(const std::string& real, bool isDirectory) const;
    std::optional<std::string> bundleReason(const std::string& real) const;
    std::optional<std::string> needsAdminReason(const std::string& real) const;
    std::optional<std::string> leftoverReason(std::string_view real) const;
    bool isBundlePlace(std::string_view path) const;
    bool isProgram(const std::string& path, bool isDirectory) const;
    bool isLeftoverFolder(std::string_view folder) const;
    bool isSharedByPrograms(std::string_view path) const;

    std::string homePath_;
    std::vector<std::string> applicationFolders_;
    std::vector<Guard> guards_;
    std::vector<std::string> cacheFolders_;
    std::vector<std::string> programFolders_;
    std::vector<std::string> programFileFolders_;
    std::vector<std::string> furtherLeftoverFolders_;
    std::vector<std::string> hiddenLeftoverFolders_;
    std::string_view fileManager_;
    std::string_view notAnApplication_;
    std::function<bool(const std::string&)> isWritable_;
};

} // namespace orbel
