#pragma once

#include "Delete/InUseChecker.h"
#include "Find/InstalledNames.h"
#include "Find/LeftoverItem.h"
#include "Find/LeftoverMatcher.h"
#include "Find/SeenPackages.h"
#include "Util/RawValue.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orbel {

class SafetyPolicy;

/// An application that is not installed any more, and what it left.
struct RemovedApp {
    enum class Kind : std::uint8_t {
        flatpak, ///< its sandbox is there, and it is installed nowhere
        snap,    ///< likewise
        package, ///< it was installed at an earlier look
        id       ///< nothing on this system has the id
    };

    std::string id; ///< as the disk has it: of the application, or the snap's name
    Kind kind = Kind::id;
    std::string name;                  ///< for people; the id when nothing else is known
    std::string lastSeen{};            ///< the day on which it was installed as far as is known; may be empty
    std::vector<DeletionItem> items{}; ///< at least one, each with its evidence; by path

    /// What tells it from all others: SeenPackages::Content::dismissed has this.
    std::string key() const;
    std::uint64_t bytes() const;
};

/// Finds what applications left that were removed; only what is certain, by whole names. Never taken for
/// that: what another name on this system is a part of, links, what belongs to another user, and what a
/// program lies in. Only caches are preselected, and no sandbox is.
class RemovedApps {
public:
    /// All that is asked. The references outlive the call.
    struct Question {
        std::span<const InstalledApp> apps; ///< all, hidden ones too
        const LeftoverMatcher& matcher;
        const SafetyPolicy& policy;
        const InstalledNames& installed;
        LeftoverItem::Measure measure{};
        InUseChecker::OpenFiles openFiles{};
    };

    struct Look {
        std::vector<RemovedApp> apps;      ///< the largest first, then by id
        std::vector<std::string> failures; ///< of the file of what was seen, for the user
    };

    /// Blocks: walks what it finds. `packages` then has what is installed now, and no more what is gone and
    /// left nothing; in a home that the policy has a reason against, it stays as it is.
    static Look look(const Question& question, const SeenPackages& packages, Date now);
};

} // namespace orbel

template <>
struct orbel::RawValues<orbel::RemovedApp::Kind> {
    static constexpr std::array<std::string_view, 4> names{"flatpak", "snap", "package", "id"};
};
