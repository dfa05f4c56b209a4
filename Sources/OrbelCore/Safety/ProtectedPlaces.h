#pragma once

#include "Safety/FileIdentity.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/PathResolver.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orbel {

/// What is protected by its path or its identity, for every kind of item. All that it knows of the disk is
/// read at construction; after that it is immutable and may be used by any thread.
class ProtectedPlaces {
public:
    struct Lists {
        std::vector<std::string> systemRoots;
        /// Real paths where they exist, in the order in which they are tried.
        std::vector<std::string> homeRoots;
        std::vector<std::string> furtherRoots; ///< tried after them; may name what does not exist yet
        std::vector<std::string> pictures;     ///< those of the further ones that hold the user's pictures
        /// The reason for what the system guards; lives as long as the program.
        std::string_view protectedBySystem;
    };

    /// `homePath`: the home's real path in visible form. `resolver` knows which places must not be asked
    /// about: of what lies there, the text of the path decides.
    ProtectedPlaces(std::string homePath, Lists lists, const PathCanonicalizer& canonicalizer,
                    PathResolver& resolver);

    /// Why `real`, a real path in visible form, is protected; absent when it is not. `identity`: that of the
    /// object, when there is one. `onPath`: what stands by the names of the path, such as the folders above.
    std::optional<std::string> reason(const std::string& real, const std::optional<FileIdentity>& identity,
                                      std::span<const SeenObject> onPath) const;
    /// The same, with what stands there now.
    std::optional<std::string> reason(const std::string& real,
                                      const std::optional<FileIdentity>& identity) const;

    const std::vector<std::string>& systemRoots() const { return systemRoots_; }
    const std::vector<std::string>& neverTouchRoots() const { return neverTouchRoots_; }

private:
    using IdentityMap = std::unordered_map<FileIdentity, std::string>;

    void recordIdentities(const std::string& root, const PathResolver& resolver);
    std::optional<std::string> reasonByPath(const std::string& real) const;
    std::optional<std::string> reasonByIdentity(const FileIdentity& identity) const;
    std::string protectedRoot(std::string_view root) const;
    std::string containsRoot(std::string_view root) const;

    std::string homePath_;
    std::vector<std::string> systemRoots_;
    std::vector<std::string> neverTouchRoots_;
    std::vector<std::string> pictures_; ///< those of them whose names need not say what they are
    std::string_view protectedBySystem_;
    /// A root, or a folder between the home and a root, may be reached through another name than its path: a
    /// hard link, a bind mount, a file system that ignores case. Both map to the path of the root.
    IdentityMap neverTouchIdentities_;
    IdentityMap protectedAncestorIdentities_;
};

} // namespace orbel
