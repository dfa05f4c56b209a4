#pragma once

#include "Platform/MountTable.h"
#include "Platform/PassingPlaces.h"
#include "Util/PathResolver.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orbel {

/// Whether what a shortcut leads to is there.
enum class TargetState : std::uint8_t { present, missing, unknown };

/// What was found out about where a shortcut leads.
struct TargetReport {
    TargetState state = TargetState::unknown;
    std::string reason{}; ///< why it is unknown, to follow a colon; else empty

    bool operator==(const TargetReport&) const = default;
};

/// Follows symbolic links name by name. Nothing is asked that lies on a network volume or would have to be
/// mounted first: such a target is unknown, and no dead server can hang the search. One thread at a time.
class LinkProber {
public:
    /// For the mounts and places of this moment. `trusted`: real paths that are asked about although they lie
    /// on such a volume, such as the home folder and the root of the search.
    explicit LinkProber(std::span<const std::string> trusted = {})
        : LinkProber(platform::mountTable(), platform::passingPlaces(), trusted) {}
    LinkProber(const std::vector<platform::Mount>& mounts, platform::PassingPlaces places,
               std::span<const std::string> trusted = {});

    /// Where the link at `link`, a path whose folder is a real one, ends.
    TargetReport probe(const std::string& link);

    /// The same for any absolute path, to which the shortcut at `from` leads.
    TargetReport probePath(const std::string& path, const std::string& from);

private:
    TargetReport reportOf(const ResolvedPath& resolved, const std::string& from) const;
    TargetReport missingAt(const std::string& path, const std::string& from) const;

    PathResolver resolver_;
    std::vector<std::string> mounted_; ///< all mount points
    platform::PassingPlaces places_;
};

} // namespace orbel
