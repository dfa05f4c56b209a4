#pragma once

#include "Platform/MountTable.h"
#include "Platform/PassingPlaces.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
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
    /// For the mounts and places of this moment.
    LinkProber() : LinkProber(platform::mountTable(), platform::passingPlaces()) {}
    LinkProber(const std::vector<platform::Mount>& mounts, platform::PassingPlaces places);

    /// What the link holds, as bytes; absent when it is none, or gone.
    static std::optional<std::string> textOf(const std::string& link);

    /// Where the link at `link`, a path whose folder is a real one, ends.
    TargetReport probe(const std::string& link);

    /// The same for any absolute path, to which the shortcut at `from` leads.
    TargetReport probePath(const std::string& path, const std::string& from);

private:
    TargetReport follow(std::string folder, std::string rest, const std::string& from);
    TargetReport missingAt(const std::string& path, const std::string& from) const;

    std::unordered_set<std::string> neverAsked_; ///< mount points of network volumes
    std::vector<std::string> mounted_;           ///< all mount points
    platform::PassingPlaces places_;
    std::unordered_set<std::string> knownFolders_; ///< seen to be folders and no links
};

} // namespace orbel
