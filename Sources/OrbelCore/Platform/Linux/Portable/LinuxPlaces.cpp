#include "Platform/Linux/Portable/LinuxPlaces.h"

#include "Platform/Linux/Portable/UserDirs.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace orbel::platform {

namespace {

constexpr std::array<std::string_view, 13> systemRoots{"/etc", "/boot",  "/dev",       "/proc",   "/sys",
                                                       "/lib", "/lib32", "/lib64",     "/libx32", "/snap",
                                                       "/nix", "/gnu",   "/lost+found"};
/// Each of these can hold home folders. It is left out when ours is among them, and the home's own rules
/// hold.
constexpr std::array<std::string_view, 12> rootsThatMayHoldHomes{
    "/root",      "/srv",     "/mnt",     "/media",  "/run",       "/var/lib",
    "/var/cache", "/var/log", "/var/opt", "/var/db", "/var/spool", "/var/mail"};

constexpr std::array<std::string_view, 33> neverTouchInHome{
    // secrets
    ".password-store", ".pki", ".netrc", ".git-credentials", ".aws", ".azure", ".kube", ".docker",
    // browsers and mail
    ".mozilla", "snap/firefox", "snap/chromium", "snap/brave", "snap/thunderbird",
    ".var/app/org.mozilla.firefox", ".var/app/org.mozilla.Thunderbird", ".var/app/com.google.Chrome",
    ".var/app/org.chromium.Chromium", ".var/app/com.brave.Browser", ".var/app/com.microsoft.Edge",
    ".var/app/com.vivaldi.Vivaldi", ".thunderbird", "Mail", "Maildir",
    // what other machines hold too: moving it here removes it there
    "Dropbox", ".dropbox", ".dropbox-dist", "Nextcloud", "ownCloud", "OneDrive", "Insync", "MEGA"};
constexpr std::array<std::string_view, 16> neverTouchInConfig{
    "gh",        "gcloud",    "rclone",    "goa-1.0",       "keepassxc",      "Bitwarden",
    "1Password", "mozilla",   "chromium",  "google-chrome", "microsoft-edge", "vivaldi",
    "opera",     "evolution", "Nextcloud", "BraveSoftware"};
/// The Trash, secrets, mail, machines, and the journal.
constexpr std::array<std::string_view, 13> neverTouchInData{
    "Trash",         "keyrings",   "kwalletd", "evolution",   "geary",   "akonadi",      "local-mail",
    "gvfs-metadata", "containers", "libvirt",  "gnome-boxes", "flatpak", "Ostrevo Orbel"};

/// Folders directly in which a program leaves something under its own name.
constexpr std::array<std::string_view, 10> leftoverFolders{".config",
                                                           ".config/autostart",
                                                           ".cache",
                                                           ".local/share",
                                                           ".local/share/applications",
                                                           ".local/share/icons",
                                                           ".local/share/icons/hicolor/*/apps",
                                                           ".local/state",
                                                           ".var/app",
                                                           "snap"};
/// Makers whose programs share one folder, in each of the first list.
constexpr std::array<std::string_view, 4> foldersWithVendors{".config", ".cache", ".local/share",
                                                             ".local/state"};
constexpr std::array<std::string_view, 11> vendors{"google",    "Google",   "JetBrains", "Microsoft",
                                                   "microsoft", "Adobe",    "KDE",       "unity3d",
                                                   "Unity",     "Autodesk", "EpicGames"};

constexpr std::array<std::string_view, 3> programFolders{"Applications", ".local/opt", "opt"};
constexpr std::array<std::string_view, 6> programFileFolders{"Applications", "AppImages",  ".local/bin",
                                                             "bin",          ".local/opt", "opt"};

constexpr std::uint64_t mostUserDirsBytes = 1024 * 1024;

/// One of the base directories: its usual place first, then the one that the environment names, if another.
std::vector<std::string> baseFolders(std::string usual, const Environment& environment,
                                     std::string_view variable) {
    std::vector<std::string> folders{std::move(usual)};
    const auto found = environment.find(variable);
    if (found != environment.end() && found->second.starts_with('/')) {
        auto named = joinedPath(found->second, "");
        if (named.size() > 1)
            named.pop_back();
        if (named != folders.front())
            folders.push_back(std::move(named));
    }
    return folders;
}

void addJoined(std::vector<std::string>& paths, const std::string& folder,
               std::span<const std::string_view> names) {
    for (const auto name : names)
        paths.push_back(joinedPath(folder, name));
}

} // namespace

Places linuxPlaces(const std::string& home, const Environment& environment) {
    const auto inHome = [&](std::string_view name) { return joinedPath(home, name); };
    const auto config = baseFolders(inHome(".config"), environment, "XDG_CONFIG_HOME");
    const auto data = baseFolders(inHome(".local/share"), environment, "XDG_DATA_HOME");
    const auto state = baseFolders(inHome(".local/state"), environment, "XDG_STATE_HOME");

    Places places;
    places.systemRoots.assign(systemRoots.begin(), systemRoots.end());
    for (const auto root : rootsThatMayHoldHomes)
        if (!isPathInside(home, root))
            places.systemRoots.emplace_back(root);

    addJoined(places.neverTouch, home, neverTouchInHome);
    for (const auto& folder : config) {
        addJoined(places.neverTouch, folder, neverTouchInConfig);
        if (const auto text = readRegularFile(joinedPath(folder, "user-dirs.dirs"), mostUserDirsBytes))
            if (auto pictures = pictureFolderIn(*text, home))
                places.neverTouch.push_back(std::move(*pictures));
    }
    for (const auto& folder : data)
        addJoined(places.neverTouch, folder, neverTouchInData);

    places.guardedFolders = {{.path = inHome(".config"), .movable = {}},
                             {.path = inHome(".local"), .movable = {}},
                             {.path = inHome(".var"), .movable = {"app/*/cache"}},
                             {.path = inHome("snap"), .movable = {"*/*/.cache"}}};
    for (const auto* base : {&config, &data, &state})
        for (const auto& folder : std::span(*base).subspan(1))
            places.guardedFolders.push_back({.path = folder, .movable = {}});

    places.cacheFolders = baseFolders(inHome(".cache"), environment, "XDG_CACHE_HOME");
    places.applicationFolders = {"/Applications", inHome("Applications")};
    addJoined(places.programFolders, home, programFolders);
    addJoined(places.programFileFolders, home, programFileFolders);
    addJoined(places.leftoverFolders, home, leftoverFolders);
    for (const auto folder : foldersWithVendors)
        addJoined(places.vendorFolders, inHome(folder), vendors);
    places.hiddenLeftoverFolders = {home};
    places.trashFolders = {joinedPath(data.back(), "Trash/files")};
    places.applicationSupport = data.back();
    return places;
}

} // namespace orbel::platform
