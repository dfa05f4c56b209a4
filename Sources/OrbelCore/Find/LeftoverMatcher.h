#pragma once

#include "Find/InstalledApp.h"
#include "Platform/Places.h"
#include "Util/PathResolver.h"
#include "Util/PathText.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// Something that an application left, and why it is taken for that.
struct Leftover {
    enum class Certainty : std::uint8_t {
        certain, ///< its name is the application's whole id, or its sandbox is the application's own
        likely   ///< its name is the application's name, and no other known program's
    };

    std::string path;
    std::string folder; ///< that holds it
    bool needsAdmin = false;
    bool isLaunchAgent = false; ///< it starts something at login
    Certainty certainty = Certainty::likely;
    bool isCache = false;   ///< a cache or a log, which programs make again
    std::string evidence{}; ///< the words of the rule that found it

    bool operator==(const Leftover&) const = default;
};

/// Finds what applications left in a home. Prefers false negatives to false positives: a name matches as a
/// whole or not at all, and never when another application or another installed program has it too, or when
/// it is a common word. Links, and what belongs to another user, are left out.
///
/// What lies where leftovers may lie is listed once, at construction; after that it is immutable.
class LeftoverMatcher {
public:
    /// What a folder is to programs, which decides on the rule.
    enum class Kind : std::uint8_t {
        data,
        sandbox,
        vendor,
        hidden,
        autostart,
        launchers,
        icons,
        library,
        systemLibrary
    };

    /// Something that lies where leftovers may lie.
    struct Candidate {
        std::string folder;
        std::string name;
        Kind kind = Kind::data;
        bool isDirectory = false;
        bool isCache = false;

        std::string path() const { return joinedPath(folder, name); }
    };

    /// The real path of the program of a name, empty when there is none.
    using ProgramNamed = std::function<std::string(const std::string& name)>;

    /// `home`: real path. `systemLibrary`: where applications leave things for all users; those
    /// are shown only.
    LeftoverMatcher(const std::string& home, const std::string& systemLibrary);
    LeftoverMatcher(std::string home, const std::string& systemLibrary, const platform::Places& places,
                    ProgramNamed programNamed);

    /// What `app` left, the certain ones first, then by path; its own files and what it is itself are not
    /// among them. `others`: all other applications, also hidden ones.
    std::vector<Leftover> leftovers(const InstalledApp& app, std::span<const InstalledApp> others) const;

    /// What it left for all users, by path.
    std::vector<Leftover> systemLeftovers(const InstalledApp& app,
                                          std::span<const InstalledApp> others) const;

    /// All that was listed, of any application or of none.
    const std::vector<Candidate>& candidates() const { return candidates_; }

private:
    struct Names;

    void list(const std::string& folder, Kind kind, bool isCache, PathResolver& paths);
    std::vector<Leftover> matches(const InstalledApp& app, std::span<const InstalledApp> others,
                                  bool forAllUsers) const;
    std::string evidenceFor(const Candidate& candidate, const Names& names, Leftover& leftover) const;

    std::string home_;
    ProgramNamed programNamed_;
    std::vector<Candidate> candidates_;
};

} // namespace orbel
