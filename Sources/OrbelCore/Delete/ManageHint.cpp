#include "Delete/ManageHint.h"

#include "Delete/FileManagerWords.h"
#include "Platform/Conventions.h"
#include "Platform/SystemPlaces.h"
#include "Safety/RealPath.h"
#include "Util/PathText.h"
#include "Util/ShellWord.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace orbel {

namespace {

namespace freeing = platform::freeing;

/// Applies to a path that holds one of the parts or has the ending; an empty one applies to none.
struct WordsRule {
    std::array<std::string_view, 2> parts;
    std::string_view ending;
    std::string_view words; ///< "{fileManager}" stands for what the platform calls it

    bool appliesTo(std::string_view path) const {
        const auto isIn = [&](std::string_view part) { return !part.empty() && path.contains(part); };
        return std::ranges::any_of(parts, isIn) || (!ending.empty() && path.ends_with(ending));
    }
};

constexpr auto wordsRules = std::to_array<WordsRule>({
    {.parts = {"/MobileSync/Backup"},
     .ending = {},
     .words = "iPhone/iPad backup — manage in {fileManager} → your device → Manage Backups"},
    {.parts = {"/com.docker.docker/"},
     .ending = "/Docker.raw",
     .words = "Docker disk image — manage in Docker Desktop → Settings → Resources"},
    {.parts = {"/Library/Developer/", "/DerivedData"},
     .ending = {},
     .words = "Developer caches — use Ostrevo Fennick"},
});

constexpr std::string_view steam = "Steam";
constexpr std::string_view placeOfName = "{name}";

/// What the name of the item in a managed folder has to be like to stand in a command.
enum class Name : std::uint8_t {
    none,     ///< the command needs none
    any,      ///< anything but what would be taken for an option
    number,   ///< digits
    date,     ///< begins with a digit
    package,  ///< of a snap: lower-case letters, digits and hyphens
    revision, ///< of a file "{package}_{revision}.snap": the package
};

/// What a program manages in a folder.
struct Place {
    /// From the root when it begins with a slash; else these names, one in the other, anywhere in a path.
    std::string_view folder;
    std::string_view program;
    std::string_view command{};
    Name name = Name::none;
    std::string_view words{}; ///< after "Managed by {program}: "; empty: the command

    bool isOfSystem() const { return folder.starts_with('/'); }
};

/// The first that applies counts. One that needs a name applies to what has such a name.
constexpr auto places = std::to_array<Place>({
    {.folder = ".local/share/flatpak/app",
     .program = "Flatpak",
     .command = "flatpak uninstall --user {name}",
     .name = Name::any},
    {.folder = ".local/share/flatpak", .program = "Flatpak", .command = freeing::flatpakRuntimes},
    {.folder = "/var/lib/flatpak/app",
     .program = "Flatpak",
     .command = "flatpak uninstall --system {name}",
     .name = Name::any},
    {.folder = "/var/lib/flatpak", .program = "Flatpak", .command = freeing::flatpakRuntimes},
    {.folder = "/var/lib/snapd/snaps",
     .program = "snap",
     .command = "sudo snap remove {name}",
     .name = Name::revision},
    {.folder = "/var/lib/snapd", .program = "snap", .command = "snap list --all"},
    {.folder = "/snap/bin", .program = "snap", .command = "snap list --all"},
    {.folder = "/snap", .program = "snap", .command = "sudo snap remove {name}", .name = Name::package},
    {.folder = ".local/share/docker", .program = "docker", .command = freeing::dockerStorage},
    {.folder = "/var/lib/docker", .program = "docker", .command = freeing::dockerStorage},
    {.folder = ".local/share/containers", .program = "podman", .command = freeing::podmanStorage},
    {.folder = "/var/lib/containers", .program = "podman", .command = freeing::systemPodmanStorage},
    {.folder = ".local/share/libvirt", .program = "libvirt", .command = "virt-manager"},
    {.folder = "/var/lib/libvirt", .program = "libvirt", .command = "virt-manager"},
    {.folder = ".local/share/gnome-boxes", .program = "Boxes", .command = "gnome-boxes"},
    {.folder = ".var/app/org.gnome.Boxes", .program = "Boxes", .command = "flatpak run org.gnome.Boxes"},
    {.folder = ".local/share/JetBrains/Toolbox/apps",
     .program = "JetBrains Toolbox",
     .words = "uninstall it there"},
    {.folder = "/.snapshots",
     .program = "snapper",
     .command = "sudo snapper delete {name}",
     .name = Name::number},
    // Which of its configurations it belongs to is not in the path, and each counts from 1.
    {.folder = ".snapshots", .program = "snapper", .command = "sudo snapper list -a", .name = Name::number},
    {.folder = "timeshift/snapshots",
     .program = "Timeshift",
     .command = "sudo timeshift --delete --snapshot {name}",
     .name = Name::date},
    {.folder = "timeshift-btrfs/snapshots",
     .program = "Timeshift",
     .command = "sudo timeshift --delete --snapshot {name}",
     .name = Name::date},
    {.folder = "/var/log/journal", .program = "journald", .command = freeing::journal},
    {.folder = "/var/cache/apt", .program = "apt", .command = freeing::aptPackages},
    {.folder = "/var/cache/dnf", .program = "dnf", .command = freeing::dnfPackages},
    {.folder = "/var/cache/libdnf5", .program = "dnf", .command = freeing::dnfPackages},
    {.folder = "/var/cache/pacman", .program = "pacman", .command = freeing::pacmanPackages},
    {.folder = "steamapps", .program = steam, .words = "uninstall its games there"},
});

/// What a path has after a folder, without the slash between them; absent when it does not lie there.
std::optional<std::string_view> restAfter(std::string_view path, std::string_view folder) {
    const bool isOfSystem = folder.starts_with('/');
    for (auto at = path.find(folder); at != std::string_view::npos; at = path.find(folder, at + 1)) {
        if (isOfSystem ? at > 0 : at == 0 || path[at - 1] != '/')
            continue;
        const auto rest = path.substr(at + folder.size());
        if (rest.empty() || rest.starts_with('/'))
            return rest.substr(std::min<std::size_t>(1, rest.size()));
    }
    return std::nullopt;
}

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isPackageName(std::string_view name) {
    return !name.empty() && !name.starts_with('-') && std::ranges::all_of(name, [](char byte) {
        return (byte >= 'a' && byte <= 'z') || isDigit(byte) || byte == '-';
    });
}

/// What stands for `{name}` in a command, before it is quoted; absent when the item has no such name.
std::optional<std::string_view> nameLike(Name name, std::string_view item) {
    bool isOne = true;
    switch (name) {
    case Name::none:
        return std::string_view();
    case Name::any:
        isOne = !item.starts_with('-');
        break;
    case Name::number:
        isOne = std::ranges::all_of(item, isDigit);
        break;
    case Name::date:
        isOne = !item.empty() && isDigit(item.front());
        break;
    case Name::revision:
        item = item.ends_with(".snap") ? item.substr(0, item.rfind('_')) : std::string_view();
        [[fallthrough]];
    case Name::package:
        isOne = isPackageName(item);
        break;
    }
    return isOne && !item.empty() ? std::optional(item) : std::nullopt;
}

std::string managedBy(std::string_view program, std::string_view words) {
    return "Managed by " + std::string(program) + ": " + std::string(words);
}

std::optional<ManageHint> hintOn(const Place& place, std::string_view path) {
    const auto rest = restAfter(path, place.folder);
    const auto name = rest ? nameLike(place.name, rest->substr(0, rest->find('/'))) : std::nullopt;
    if (!name)
        return std::nullopt;
    ManageHint hint{
        .program = std::string(place.program), .words = {}, .command = std::string(place.command)};
    if (const auto at = hint.command.find(placeOfName); at != std::string::npos)
        hint.command.replace(at, placeOfName.size(), shellWord(*name));
    hint.words = managedBy(place.program, place.words.empty() ? hint.command : place.words);
    if (place.program == steam)
        hint.address = "steam://open/games";
    return hint;
}

/// The hint on what lies where only the system's own programs put things.
std::optional<ManageHint> systemHint(std::string_view path) {
    for (const auto& place : places)
        if (place.isOfSystem())
            if (auto hint = hintOn(place, path))
                return hint;
    return std::nullopt;
}

/// The hint on a game that its library names.
std::optional<ManageHint> gameHint(const std::string& path, SafetyPolicy::SeenFolders& seen) {
    const auto game = restAfter(path, "steamapps/common");
    if (!game || game->empty())
        return std::nullopt;
    const auto folder = game->substr(0, game->find('/'));
    const std::string_view common(path.data(), static_cast<std::size_t>(game->data() - path.data()));
    const auto library = seen.paths.resolve(parentPath(common));
    const auto* found = library.isFound() ? steamGameAt(library.path, folder, seen.games) : nullptr;
    if (found == nullptr)
        return std::nullopt;
    return ManageHint{.program = std::string(steam),
                      .words = managedBy(steam, found->name + ". Uninstall it there"),
                      .address = "steam://uninstall/" + found->appId};
}

} // namespace

std::optional<ManageHint> ManageHint::of(std::string_view path) {
    for (const auto& rule : wordsRules)
        if (rule.appliesTo(path))
            return ManageHint{.words = withFileManager(rule.words)};
    for (const auto& place : places)
        if (auto hint = hintOn(place, path))
            return hint;
    return std::nullopt;
}

std::optional<ManageHint> ManageHint::of(const std::string& path, SafetyPolicy::SeenFolders& seen) {
    auto game = gameHint(path, seen);
    return game ? std::move(game) : of(path);
}

std::string ManageHint::explain(const std::string& path, const std::string& refusal,
                                std::string_view homePath, SafetyPolicy::SeenFolders* seen) {
    // One's own other disk needs no administrator, and no program is known to manage what lies there.
    const bool isElsewhere =
        platform::conventions().hasFurtherRefusals && refusal == SafetyPolicy::onAnotherVolume;
    auto hint = seen != nullptr ? gameHint(path, *seen) : std::nullopt;
    if (!hint)
        hint = isElsewhere ? systemHint(path) : of(path);
    if (hint)
        return hint->words;
    if (!isElsewhere && !RealPath::isInside(path, homePath) && !path.starts_with("/Applications/"))
        return "System-wide: needs an administrator; Vanto does not change it";
    return refusal;
}

bool ManageHint::isShownAs(std::string_view reason) const {
    return reason == words || (!program.empty() && reason.starts_with(managedBy(program, "")));
}

} // namespace orbel
