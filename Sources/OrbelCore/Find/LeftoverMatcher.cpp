#include "Find/LeftoverMatcher.h"

#include "Find/AppNames.h"
#include "Find/CommonWords.h"
#include "Platform/Applications.h"
#include "Platform/FileStatus.h"
#include "Platform/Launchers.h"
#include "Platform/MountTable.h"
#include "Safety/PlaceRules.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <optional>
#include <set>
#include <span>
#include <system_error>
#include <tuple>
#include <utility>

#include <unistd.h>

namespace orbel {

namespace {

namespace fs = std::filesystem;

bool isAny(const auto& values, std::string_view value) {
    return std::ranges::any_of(values, [&](const auto& each) { return value == each; });
}

/// The name without one of the endings that a platform puts behind an id.
std::string_view withoutEnding(std::string_view name, std::span<const std::string_view> endings) {
    for (const auto ending : endings)
        if (name.size() > ending.size() && name.ends_with(ending))
            return name.substr(0, name.size() - ending.size());
    return name;
}

/// "ID" of "ID.{UUID}.plist", as settings for one machine are called.
std::string_view withoutMachine(std::string_view name) {
    constexpr std::size_t uuidSize = 36;
    const auto isUuid = [](char c) { return c == '-' || std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    if (name.size() < uuidSize + 2 || name[name.size() - uuidSize - 1] != '.'
        || !std::ranges::all_of(name.substr(name.size() - uuidSize), isUuid))
        return name;
    return name.substr(0, name.size() - uuidSize - 1);
}

/// Whether the maker's name is a part of one of the names.
bool isOfVendor(const InstalledApp& app, std::string_view vendor) {
    const auto hasPart = [&](std::string_view name) {
        while (!name.empty()) {
            const auto end = std::min(name.find_first_of(".-_ /"), name.size());
            if (name.substr(0, end) == vendor)
                return true;
            name.remove_prefix(std::min(end + 1, name.size()));
        }
        return false;
    };
    auto names = everyNameOf(app);
    for (const auto& program : app.executables)
        names.insert(lowerCase(program));
    return std::ranges::any_of(names, hasPart);
}

} // namespace

/// The names of one application that no other program has.
struct LeftoverMatcher::Names {
    std::vector<std::string> ids;   ///< whole ids, as they are
    std::vector<std::string> words; ///< in lower case
    std::vector<std::string> groups;
    const InstalledApp* app = nullptr;
    std::span<const InstalledApp> others;
};

LeftoverMatcher::LeftoverMatcher(const std::string& home, const std::string& systemLibrary)
    : LeftoverMatcher(home, systemLibrary, platform::places(home), platform::programFinder(home)) {}

LeftoverMatcher::LeftoverMatcher(std::string home, const std::string& systemLibrary,
                                 const platform::Places& places, ProgramNamed programNamed)
    : home_(std::move(home)), programNamed_(std::move(programNamed)) {
    PathResolver paths(platform::mountPointsOutOfReach(platform::mountTable(), std::span(&home_, 1)));
    for (const auto name : PlaceRules::leftoverFolders)
        list(joinedPath(joinedPath(home_, "Library"), name), Kind::library,
             name == "Caches" || name == "Logs", paths);
    for (const std::string_view name : {"Application Support", "Caches", "LaunchAgents", "LaunchDaemons",
                                        "Logs", "Preferences", "PrivilegedHelperTools"})
        list(joinedPath(systemLibrary, name), Kind::systemLibrary, false, paths);

    const auto isCacheFolder = [&](std::string_view folder) { return isAny(places.cacheFolders, folder); };
    for (const auto& folder : places.leftoverFolders) {
        const auto name = lastPathComponent(folder);
        auto kind = Kind::data;
        if (name == "autostart")
            kind = Kind::autostart;
        else if (name == "applications")
            kind = Kind::launchers;
        else if (name == "icons" || name == "apps")
            kind = Kind::icons;
        if (folder == joinedPath(home_, ".var/app") || folder == joinedPath(home_, "snap"))
            kind = Kind::sandbox;
        const auto star = folder.find("/*");
        if (star == std::string::npos) {
            list(folder, kind, isCacheFolder(folder), paths);
            continue;
        }
        std::error_code error;
        fs::directory_iterator between(folder.substr(0, star), error);
        for (; !error && between != fs::directory_iterator(); between.increment(error))
            list(between->path().string() + folder.substr(star + 2), kind, false, paths);
    }
    for (const auto& folder : places.vendorFolders)
        list(folder, Kind::vendor, isCacheFolder(parentPath(folder)), paths);
    for (const auto& folder : places.hiddenLeftoverFolders)
        list(folder, Kind::hidden, false, paths);
    // A folder that all programs, or all of one maker, share lies itself where leftovers may lie.
    std::erase_if(candidates_, [&](const Candidate& candidate) {
        const auto path = candidate.path();
        return isAny(places.leftoverFolders, path) || isAny(places.vendorFolders, path);
    });
}

void LeftoverMatcher::list(const std::string& folder, Kind kind, bool isCache, PathResolver& paths) {
    // Through a link the policy would find it elsewhere, and refuse it.
    if (const auto resolved = paths.resolve(folder); !resolved.isFound() || resolved.path != folder)
        return;
    std::error_code error;
    fs::directory_iterator entries(folder, error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        auto name = entries->path().filename().string();
        if ((kind == Kind::hidden && !name.starts_with('.')) || paths.isOutOfReach(entries->path().native()))
            continue;
        const auto status = platform::fileStatus(entries->path().string());
        const bool isOwn = kind == Kind::systemLibrary || (status && status->owner == ::geteuid());
        if (!status || !isOwn || status->type == platform::FileType::symbolicLink)
            continue;
        candidates_.push_back({.folder = folder,
                               .name = std::move(name),
                               .kind = kind,
                               .isDirectory = status->type == platform::FileType::directory,
                               .isCache = isCache});
    }
}

std::vector<Leftover> LeftoverMatcher::leftovers(const InstalledApp& app,
                                                 std::span<const InstalledApp> others) const {
    return matches(app, others, false);
}

std::vector<Leftover> LeftoverMatcher::systemLeftovers(const InstalledApp& app,
                                                       std::span<const InstalledApp> others) const {
    return matches(app, others, true);
}

std::vector<Leftover> LeftoverMatcher::matches(const InstalledApp& app, std::span<const InstalledApp> others,
                                               bool forAllUsers) const {
    std::set<std::string> taken;
    for (const auto& other : others)
        taken.merge(everyNameOf(other));
    const auto isOthersProgram = [&](const std::string& name) {
        const auto program = programNamed_ ? programNamed_(name) : std::string();
        return !program.empty() && !isAny(app.executables, program);
    };
    Names names{.ids = {}, .words = {}, .groups = app.appGroups, .app = &app, .others = others};
    auto given = app.identifiers;
    given.insert(given.end(), app.names.begin(), app.names.end());
    for (const auto& name : given) {
        auto word = lowerCase(name);
        if (taken.contains(word))
            continue;
        if (isReverseDns(name)) {
            if (!isAny(names.ids, name))
                names.ids.push_back(name);
        } else if (isTellingWord(word) && !isAny(names.words, word) && !isOthersProgram(name)
                   && !isOthersProgram(word)) {
            names.words.push_back(std::move(word));
        }
    }
    std::erase_if(names.groups, [&](const std::string& group) { return taken.contains(lowerCase(group)); });

    std::vector<Leftover> found;
    for (const auto& candidate : candidates_) {
        if ((candidate.kind == Kind::systemLibrary) != forAllUsers)
            continue;
        Leftover leftover{.path = candidate.path(),
                          .folder = candidate.folder,
                          .needsAdmin = forAllUsers,
                          .isLaunchAgent = candidate.kind == Kind::autostart
                                           || candidate.folder.ends_with("/LaunchAgents")
                                           || candidate.folder.ends_with("/LaunchDaemons"),
                          .isCache = candidate.isCache};
        leftover.evidence = evidenceFor(candidate, names, leftover);
        // Neither the application nor what it is made of is a leftover, nor is what any of them lies in.
        const auto isApps = [&](const std::string& path) { return RealPath::isInside(path, leftover.path); };
        if (!leftover.evidence.empty() && !isApps(app.path) && std::ranges::none_of(app.executables, isApps)
            && !isAny(app.ownFiles, leftover.path)
            && std::ranges::none_of(others, [&](const InstalledApp& other) {
                   return isApps(other.path) || std::ranges::any_of(other.executables, isApps);
               }))
            found.push_back(std::move(leftover));
    }
    std::ranges::sort(found, {}, [](const Leftover& each) { return std::tuple(each.certainty, each.path); });
    return found;
}

/// The words of the rule by which the candidate belongs to the application, and sets how sure that is; empty
/// when it does not.
std::string LeftoverMatcher::evidenceFor(const Candidate& candidate, const Names& names,
                                         Leftover& leftover) const {
    const auto& app = *names.app;
    const auto byId = [&](std::string_view name) -> std::string {
        if (!isAny(names.ids, name))
            return {};
        leftover.certainty = Leftover::Certainty::certain;
        return "Named by its whole id " + inQuotes(name);
    };
    const auto byWord = [&](std::string_view name) -> std::string {
        if (!isAny(names.words, lowerCase(name)))
            return {};
        leftover.certainty = Leftover::Certainty::likely;
        return "Named like its program " + inQuotes(name) + ", and no other application is";
    };
    const auto byIdOrWord = [&](std::string_view name) {
        auto evidence = byId(name);
        return evidence.empty() ? byWord(name) : evidence;
    };
    static constexpr std::array<std::string_view, 1> launcher{".desktop"};
    static constexpr std::array<std::string_view, 4> icon{"-symbolic.svg", ".png", ".svg", ".xpm"};
    static constexpr std::array<std::string_view, 3> bundle{".plist", ".savedState", ".binarycookies"};

    switch (candidate.kind) {
    case Kind::data:
        return byIdOrWord(candidate.name);
    case Kind::sandbox: {
        const auto isSame = [&](const InstalledApp& other) {
            return isAny(other.dataFolders, leftover.path);
        };
        if (!isAny(app.dataFolders, leftover.path) || std::ranges::any_of(names.others, isSame))
            return {};
        leftover.certainty = Leftover::Certainty::certain;
        return "Its sandbox keeps its data here";
    }
    case Kind::vendor: {
        const auto vendor = lastPathComponent(candidate.folder);
        if (std::ranges::any_of(names.others, [&](const InstalledApp& other) {
                return isOfVendor(other, lowerCase(vendor));
            }))
            return {};
        auto evidence = byIdOrWord(candidate.name);
        return evidence.empty() ? evidence : evidence + " of " + inQuotes(vendor);
    }
    case Kind::hidden:
        return candidate.isDirectory ? byWord(std::string_view(candidate.name).substr(1)) : std::string();
    case Kind::autostart: {
        const auto id = withoutEnding(candidate.name, launcher);
        if (id == candidate.name || candidate.isDirectory)
            return {};
        if (auto evidence = byId(id); !evidence.empty())
            return evidence + ": it starts at login";
        // Another application may have the same short id: its program decides.
        const auto target = platform::launcherTarget(leftover.path, home_);
        if (!isAny(app.identifiers, id) || !target || target->state != platform::LauncherTarget::State::found
            || !isAny(app.executables, RealPath::resolve(target->program).value_or("")))
            return {};
        leftover.certainty = Leftover::Certainty::certain;
        return "Starts it at login under its id " + inQuotes(id);
    }
    case Kind::launchers:
    case Kind::icons: {
        const auto stem = candidate.kind == Kind::icons ? withoutEnding(candidate.name, icon)
                                                        : withoutEnding(candidate.name, launcher);
        return stem == candidate.name || candidate.isDirectory ? std::string() : byId(stem);
    }
    case Kind::library:
    case Kind::systemLibrary:
        break;
    }
    if (isAny(names.groups, candidate.name)) {
        leftover.certainty = Leftover::Certainty::certain;
        return "Its application group " + inQuotes(candidate.name);
    }
    const auto name = withoutMachine(withoutEnding(candidate.name, bundle));
    if (auto evidence = byId(name); !evidence.empty() || candidate.kind == Kind::systemLibrary)
        return evidence;
    const auto folder = lastPathComponent(candidate.folder);
    return folder == "Application Support" || folder == "Caches" || folder == "Logs" ? byWord(candidate.name)
                                                                                     : std::string();
}

} // namespace orbel
