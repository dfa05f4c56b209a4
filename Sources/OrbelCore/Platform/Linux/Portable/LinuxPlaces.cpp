#include "Platform/Linux/Portable/LinuxPlaces.h"

#include "Platform/Linux/Portable/UserDirs.h"
#include "Platform/ToolCaches.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace orbel::platform {

namespace {

constexpr auto systemRoots =
    std::to_array<std::string_view>({"/etc", "/boot", "/dev", "/proc", "/sys", "/lib", "/lib32", "/lib64",
                                     "/libx32", "/snap", "/nix", "/gnu", "/lost+found"});
/// Each of these can hold home folders. It is left out when ours is among them, and the home's
/// own rules hold.
constexpr auto rootsThatMayHoldHomes =
    std::to_array<std::string_view>({"/root", "/srv", "/mnt", "/media", "/run", "/var/lib", "/var/cache",
                                     "/var/log", "/var/opt", "/var/db", "/var/spool", "/var/mail"});

constexpr auto neverTouchInHome = std::to_array<std::string_view>(
    {// secrets
     ".password-store", ".pki", ".netrc", ".git-credentials", ".aws", ".azure", ".kube", ".docker", ".oci",
     ".step/secrets", ".android/debug.keystore", ".gnome2/keyrings", ".kde/share/apps/kwallet", ".ecryptfs",
     ".Private", ".cargo/credentials", ".cargo/credentials.toml", ".m2/settings-security.xml",
     ".terraform.d/credentials", ".terraform.d/credentials.tfrc.json",
     // wallets
     ".bitcoin", ".electrum", ".ethereum/keystore",
     // browsers
     ".mozilla", ".librewolf", ".waterfox", ".tor-browser", ".opera", "snap/firefox", "snap/chromium",
     "snap/brave", ".var/app/org.mozilla.firefox", ".var/app/com.google.Chrome",
     ".var/app/org.chromium.Chromium", ".var/app/com.brave.Browser", ".var/app/com.microsoft.Edge",
     ".var/app/com.vivaldi.Vivaldi",
     // mail and messages
     ".thunderbird", ".icedove", ".evolution", ".claws-mail", ".mutt", ".purple", ".maildir", ".Maildir",
     ".mail", "Mail", "Maildir", "snap/thunderbird", ".var/app/org.mozilla.Thunderbird",
     // what other machines hold too: moving it here removes it there
     "Dropbox", ".dropbox", ".dropbox-dist", "Nextcloud", "ownCloud", "OneDrive", "Insync", "MEGA", "Seafile",
     "Google Drive", "pCloudDrive", "Sync", "Yandex.Disk", "SynologyDrive", "ProtonDrive"});
constexpr auto neverTouchInConfig = std::to_array<std::string_view>(
    {"gh", "gcloud", "rclone", "goa-1.0", "keepassxc", "Bitwarden", "1Password", "mozilla", "chromium",
     "google-chrome", "microsoft-edge", "vivaldi", "opera", "evolution", "Nextcloud", "BraveSoftware"});
/// The Trash, secrets, mail, machines, and the journal.
constexpr auto neverTouchInData = std::to_array<std::string_view>(
    {"Trash", "keyrings", "kwalletd", "evolution", "geary", "akonadi", "local-mail", "gvfs-metadata",
     "containers", "libvirt", "gnome-boxes", "flatpak", "Ostrevo Orbel"});

/// What programs make again, in the folder of any program.
constexpr auto cachesInConfig = std::to_array<std::string_view>(
    {"*/Cache", "*/Code Cache", "*/GPUCache", "*/CachedData", "*/CachedExtensionVSIXs",
     "*/Service Worker/CacheStorage", "*/Crashpad"});

/// The same, by their own names, each with its program.
using Cache = std::pair<std::string_view, std::string_view>;
constexpr auto cachesInData =
    std::to_array<Cache>({{"pnpm/store", "pnpm"}, {"virtualenvs", "pipenv"}, {"uv", "uv"}});

/// Folders directly in which a program leaves something under its own name.
constexpr auto leftoverFolders = std::to_array<std::string_view>(
    {".config", ".config/autostart", ".cache", ".local/share", ".local/share/applications",
     ".local/share/icons", ".local/share/icons/hicolor/*/apps", ".local/state", ".var/app", "snap"});
/// Makers whose programs share one folder, in each of the first list.
constexpr auto foldersWithVendors =
    std::to_array<std::string_view>({".config", ".cache", ".local/share", ".local/state"});
constexpr auto vendors =
    std::to_array<std::string_view>({"google", "Google", "JetBrains", "Microsoft", "microsoft", "Adobe",
                                     "KDE", "unity3d", "Unity", "Autodesk", "EpicGames"});

constexpr auto programFolders = std::to_array<std::string_view>({"Applications", ".local/opt", "opt"});
constexpr auto programFileFolders = std::to_array<std::string_view>(
    {"Applications", "AppImages", ".local/bin", "bin", ".local/opt", "opt", "Downloads", "Desktop"});

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

std::vector<std::string> asStrings(std::span<const std::string_view> names) {
    return {names.begin(), names.end()};
}

void addJoined(std::vector<std::string>& paths, const std::string& folder, const auto& names) {
    for (const auto& name : names)
        paths.push_back(joinedPath(folder, name));
}

void addCaches(std::vector<RebuildablePlace>& places, const std::string& folder,
               std::span<const Cache> caches) {
    for (const auto& [path, program] : caches)
        places.push_back({.path = joinedPath(folder, path), .program = std::string(program)});
}

void addCaches(std::vector<RebuildablePlace>& places, const std::string& folder,
               std::span<const std::string> caches) {
    for (const auto& path : caches)
        places.push_back({.path = joinedPath(folder, path)});
}

} // namespace

Places linuxPlaces(const std::string& home, const Environment& environment, PathResolver resolver) {
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
        const auto list = resolver.resolve(joinedPath(folder, "user-dirs.dirs"));
        const auto text = list.isFound() ? readRegularFile(list.path, mostUserDirsBytes) : std::nullopt;
        for (auto& [name, userFolder] : userFoldersIn(text.value_or(""), home)) {
            if (name == "PICTURES")
                places.neverTouch.push_back(userFolder);
            else if (name == "DOWNLOAD" || name == "DESKTOP")
                places.programFileFolders.push_back(userFolder);
            places.namedFolders.push_back(std::move(userFolder));
        }
    }
    for (const auto& folder : data)
        addJoined(places.neverTouch, folder, neverTouchInData);

    places.rebuildablePlaces = toolCaches(home);
    places.cacheFolders = baseFolders(inHome(".cache"), environment, "XDG_CACHE_HOME");
    const std::vector<std::string> anyProgram{"*"};
    for (const auto& folder : places.cacheFolders)
        addCaches(places.rebuildablePlaces, folder, anyProgram);

    const auto inConfig = asStrings(cachesInConfig);
    std::vector<std::string> inData;
    inData.reserve(cachesInData.size());
    for (const auto& cache : cachesInData)
        inData.emplace_back(cache.first);
    std::vector<std::string> inLocal;
    addJoined(inLocal, "share", inData);
    const auto guard = [&](const std::string& folder, std::vector<std::string> movable) {
        places.guardedFolders.push_back({.path = folder, .movable = std::move(movable)});
    };
    // Of the base directories in the home, the folders above them are guarded too.
    guard(inHome(".config"), inConfig);
    guard(inHome(".local"), std::move(inLocal));
    for (const auto& [folder, movable] : {std::pair(inHome(".var"), std::string("app/*/cache")),
                                          std::pair(inHome("snap"), std::string("*/*/.cache"))}) {
        guard(folder, {movable});
        places.rebuildablePlaces.push_back({.path = joinedPath(folder, movable)});
    }
    for (const auto& folder : config) {
        addCaches(places.rebuildablePlaces, folder, inConfig);
        if (folder != config.front())
            guard(folder, inConfig);
    }
    for (const auto& folder : data) {
        addCaches(places.rebuildablePlaces, folder, cachesInData);
        if (folder != data.front())
            guard(folder, inData);
    }
    for (const auto& folder : std::span(state).subspan(1))
        guard(folder, {});

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
