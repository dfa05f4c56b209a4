#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// Translates between the two names that one folder has where the start-up disk is split into a system and a
/// data volume: the visible name that people see, and the name under the data volume's mount point, which
/// resolving a path can yield. Immutable; may be used by any thread. Where the disk is not split, both
/// translations change nothing.
class PathCanonicalizer {
public:
    static constexpr std::string_view dataVolumePrefix = "/System/Volumes/Data";

    struct Mapping {
        std::string dataRelative; ///< relative to the data volume's root, no leading slash: "Users"
        std::string visible;      ///< absolute: "/Users"

        bool operator==(const Mapping&) const = default;
    };

    /// Reads the system's table: one folder a line, visible path, tab, data-relative path. Lines of another
    /// form are passed over.
    explicit PathCanonicalizer(std::string_view firmlinksTable);

    /// The instance of this system's table, built on first use.
    static const PathCanonicalizer& shared();

    /// The real path in its visible form, in which paths are compared, journalled and shown; absent when the
    /// path cannot be resolved.
    std::optional<std::string> canonical(const std::string& path) const;

    /// The visible name of a path under the data volume; any other path, and one that has no
    /// visible name, unchanged.
    std::string visiblePath(std::string_view path) const;

    /// The inverse: the name under the data volume of a visible path; a path that has none, unchanged.
    std::string dataVolumePath(std::string_view path) const;

    /// Longest `dataRelative` first (counted in characters), equally long ones in the order of the table: the
    /// first that matches is the most specific one.
    const std::vector<Mapping>& mappings() const { return mappings_; }

private:
    std::vector<Mapping> mappings_;
};

} // namespace orbel
