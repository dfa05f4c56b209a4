#include "Find/RemovedApps.h"

#include "Find/AppNames.h"
#include "Find/CommonWords.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/ContentKind.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <utility>

namespace orbel {

namespace {

using Kind = RemovedApp::Kind;
using Candidate = LeftoverMatcher::Candidate;

/// Of those with more than two letters, the ones that ids begin with.
constexpr auto topLevelDomains = std::to_array<std::string_view>(
    {"app",       "art",     "biz",     "chat",    "cloud", "codes", "com",   "community",
     "design",    "dev",     "digital", "edu",     "email", "games", "gov",   "info",
     "int",       "live",    "media",   "mil",     "mobi",  "name",  "net",   "network",
     "news",      "online",  "org",     "page",    "pro",   "rocks", "site",  "software",
     "solutions", "space",   "studio",  "systems", "team",  "tech",  "tools", "tube",
     "video",     "website", "wiki",    "work",    "world", "xyz",   "zone"});

/// Programs share what has these names, or names below them: desktops, services and libraries, which no
/// launcher need have.
constexpr auto sharedIds = std::to_array<std::string_view>({"ca.desrt.dconf",
                                                            "com.canonical",
                                                            "com.ubuntu",
                                                            "org.a11y",
                                                            "org.bluez",
                                                            "org.cinnamon",
                                                            "org.freedesktop",
                                                            "org.gnome.desktop",
                                                            "org.gnome.evolution",
                                                            "org.gnome.libgnomekbd",
                                                            "org.gnome.settings-daemon",
                                                            "org.gnome.shell",
                                                            "org.gtk",
                                                            "org.kde.frameworks",
                                                            "org.kde.kded5",
                                                            "org.kde.kded6",
                                                            "org.kde.plasma",
                                                            "org.kde.plasmashell",
                                                            "org.kde.syntax-highlighting",
                                                            "org.mate",
                                                            "org.mpris",
                                                            "org.pipewire",
                                                            "org.pulseaudio",
                                                            "org.x",
                                                            "org.xfce"});

bool isInId(std::string_view id, std::string_view whole) {
    return id == whole || (id.starts_with(whole) && id.substr(whole.size()).starts_with('.'));
}

/// Whether a name of the disk is a whole id of an application, and nothing else.
bool isWholeId(const Candidate& candidate) {
    const auto id = lowerCase(candidate.name);
    const auto isIdLetter = [](unsigned char c) {
        return (std::isalnum(c) != 0 && c < 0x80) || c == '.' || c == '_' || c == '-';
    };
    if (!isReverseDns(id) || !std::ranges::all_of(id, isIdLetter))
        return false;
    // A file's last part is its ending where that says what the file is.
    if (!candidate.isDirectory && classifyContent(id, false) != ContentKind::other)
        return false;
    const auto domain = std::string_view(id).substr(0, id.find('.'));
    const auto isLetter = [](unsigned char c) { return std::isalpha(c) != 0; };
    constexpr std::size_t countryLetters = 2;
    const bool isDomain = (domain.size() == countryLetters && std::ranges::all_of(domain, isLetter))
                          || std::ranges::find(topLevelDomains, domain) != topLevelDomains.end();
    return isDomain
           && std::ranges::none_of(sharedIds, [&](std::string_view shared) { return isInId(id, shared); });
}

/// The part of an id that names the program: not all of them have their id in a launcher or anywhere else.
std::string_view ownPart(std::string_view id) {
    constexpr auto general =
        std::to_array<std::string_view>({"app", "application", "client", "desktop", "gui"});
    const auto last = id.substr(id.rfind('.') + 1);
    if (std::ranges::find(general, lowerCase(last)) == general.end())
        return last;
    id.remove_suffix(last.size() + 1);
    return id.substr(id.rfind('.') + 1);
}

/// Whether a name may be that of a snap, or of a further instance of one: NAME or NAME_KEY.
bool isSnapName(std::string_view name) {
    const auto isPlain = [](unsigned char c) {
        return std::islower(c) != 0 || std::isdigit(c) != 0 || c == '-' || c == '_';
    };
    // Its programs' links lie in a folder beside the snaps' own.
    return name != "bin" && std::ranges::all_of(name, isPlain);
}

bool isNamedBy(const Candidate& candidate, const SeenPackages::App& app) {
    const auto name = lowerCase(candidate.name);
    return name == lowerCase(app.id) || name == lowerCase(app.package);
}

class Finder {
public:
    Finder(const RemovedApps::Question& question, const SeenPackages::Content& seen)
        : question_(question), seen_(seen), gone_(seen.gone(question.installed)) {}

    /// To be called once.
    std::vector<RemovedApp> apps() {
        for (const auto& candidate : question_.matcher.candidates())
            if (candidate.kind == LeftoverMatcher::Kind::sandbox)
                addSandbox(candidate);
        const bool isComplete = question_.installed.isComplete();
        for (const auto& app : gone_)
            if (isComplete && app.manager != "flatpak" && app.manager != "snap")
                addPackage(app);
        for (const auto& candidate : question_.matcher.candidates())
            if (isComplete && candidate.kind == LeftoverMatcher::Kind::data && isWholeId(candidate)
                && !question_.installed.hasId(candidate.name)
                && !question_.installed.isAppCalled(ownPart(candidate.name)))
                add(candidate, Kind::id, candidate.name,
                    "Named by the whole id " + inQuotes(candidate.name) + ", which nothing installed has",
                    nullptr);
        std::vector<RemovedApp> apps;
        for (const auto& [id, found] : found_)
            if (!seen_.dismissed.contains(found.app.key()))
                apps.push_back(finished(found));
        std::ranges::sort(apps, {}, [](const RemovedApp& app) { return std::pair(~app.bytes(), app.id); });
        return apps;
    }

    /// What is to be known at the next look.
    SeenPackages::Content remaining() const {
        auto content = seen_;
        std::erase_if(content.apps, [&](const SeenPackages::App& app) {
            return std::ranges::find(gone_, app) != gone_.end()
                   && std::ranges::none_of(question_.matcher.candidates(), [&](const Candidate& candidate) {
                          return isNamedBy(candidate, app);
                      });
        });
        std::erase_if(content.dismissed, [&](const std::string& key) {
            return knowsAll() && std::ranges::none_of(found_, [&](const auto& each) {
                       return each.second.app.key() == key;
                   });
        });
        return content;
    }

private:
    struct Found {
        RemovedApp app;
        std::map<std::string, std::pair<const Candidate*, std::string>> items; ///< by path, with the evidence
    };

    bool knowsAll() const {
        const auto& installed = question_.installed;
        return installed.isComplete() && installed.isAnswering("flatpak") && installed.isAnswering("snap")
               && std::ranges::all_of(seen_.apps, [&](const SeenPackages::App& app) {
                      return installed.isAnswering(app.manager);
                  });
    }

    void addSandbox(const Candidate& candidate) {
        if (!candidate.isDirectory)
            return;
        const bool isSnap = candidate.folder == joinedPath(question_.policy.homePath(), "snap");
        const std::string_view manager = isSnap ? "snap" : "flatpak";
        if (!(isSnap ? isSnapName(candidate.name) : isReverseDns(candidate.name))
            || !question_.installed.isAnswering(manager)
            || question_.installed.hasPackage(manager, candidate.name))
            return;
        const auto known = std::ranges::find_if(gone_, [&](const SeenPackages::App& app) {
            return app.manager == manager && lowerCase(app.package) == lowerCase(candidate.name);
        });
        std::string evidence = isSnap ? "Its snap kept its data here, and is not installed"
                                      : "Its sandbox kept its data here, and it is installed nowhere";
        if (known != gone_.end())
            evidence += "; it was on " + known->day;
        add(candidate, isSnap ? Kind::snap : Kind::flatpak, candidate.name, std::move(evidence),
            known == gone_.end() ? nullptr : &*known);
    }

    void addPackage(const SeenPackages::App& app) {
        const auto wasInstalled =
            "; " + app.package + " was installed on " + app.day + ", and is not any more";
        for (const auto& candidate : question_.matcher.candidates()) {
            if (candidate.kind != LeftoverMatcher::Kind::data)
                continue;
            if (!isNamedBy(candidate, app))
                continue;
            const auto name = lowerCase(candidate.name);
            if (isReverseDns(name)) {
                if (!question_.installed.hasId(name))
                    add(candidate, Kind::package, app.id,
                        "Named by its whole id " + inQuotes(candidate.name) + wasInstalled, &app);
            } else if (isTellingWord(name) && !question_.installed.hasName(name)) {
                add(candidate, Kind::package, app.id,
                    "Named like its package " + inQuotes(candidate.name) + wasInstalled, &app);
            }
        }
    }

    void add(const Candidate& candidate, Kind kind, const std::string& id, std::string evidence,
             const SeenPackages::App* known) {
        auto path = candidate.path();
        if (question_.installed.hasProgramIn(path) || !taken_.insert(path).second)
            return;
        auto& found = found_[lowerCase(id)];
        if (found.items.empty())
            found.app = {.id = id,
                         .kind = kind,
                         .name = known != nullptr ? known->name : lossyUtf8(id),
                         .lastSeen = known != nullptr ? known->day : std::string()};
        found.items.emplace(std::move(path), std::pair(&candidate, std::move(evidence)));
    }

    RemovedApp finished(const Found& found) const {
        auto app = found.app;
        for (const auto& [path, said] : found.items) {
            auto item = LeftoverItem::at(path, said.second);
            item.blockedReason = useReason(
                question_.openFiles.users(item.scanStamp.identity, path, item.scanStamp.isDirectory));
            if (!item.blockedReason)
                LeftoverItem::check(item, question_.policy, question_.measure);
            item.preselected = item.isSelectable() && said.first->isCache;
            app.items.push_back(std::move(item));
        }
        return app;
    }

    const RemovedApps::Question& question_;
    const SeenPackages::Content& seen_;
    std::vector<SeenPackages::App> gone_;
    std::map<std::string, Found> found_; ///< by id in lower case
    std::set<std::string> taken_;        ///< paths that are an item of one already
};

} // namespace

RemovedApps::Look RemovedApps::look(const Question& question, const SeenPackages& packages, Date now) {
    auto before = packages.read();
    auto seen = before.content;
    seen.see(question.apps, now);
    Finder finder(question, seen);
    Look look{.apps = finder.apps(), .failures = {}};
    auto after = finder.remaining();
    if (before.failure)
        look.failures.push_back(*std::move(before.failure));
    if ((after == before.content && look.failures.empty()) || question.policy.homeReason())
        return look;
    // What was dismissed while this took its time.
    for (const auto& key : packages.read().content.dismissed)
        if (!before.content.dismissed.contains(key))
            after.dismissed.insert(key);
    if (auto written = packages.write(after); !written)
        look.failures.push_back(std::move(written.error()));
    return look;
}

std::string RemovedApp::key() const {
    return std::string(rawValue(kind)) + ":" + lowerCase(lossyUtf8(id));
}

std::uint64_t RemovedApp::bytes() const {
    std::uint64_t bytes = 0;
    for (const auto& item : items)
        bytes += item.estimatedBytes;
    return bytes;
}

} // namespace orbel
