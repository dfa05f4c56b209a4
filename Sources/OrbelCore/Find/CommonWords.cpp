#include "Find/CommonWords.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace orbel {

namespace {

/// In lower case. Names of what many programs share, of the parts of a desktop, and words that any program
/// could be called by.
constexpr std::array commonWords = std::to_array<std::string_view>(
    {"agent",      "android",     "apache",    "application",   "applications", "apps",          "archive",
     "audio",      "autostart",   "backup",    "backups",       "base",         "bash",          "binary",
     "bookmarks",  "browser",     "build",     "cache",         "caches",       "calculator",    "calendar",
     "camera",     "cargo",       "chat",      "client",        "clock",        "cloud",         "code",
     "color",      "common",      "config",    "configuration", "console",      "contacts",      "containers",
     "cookies",    "core",        "crash",     "crashes",       "cups",         "daemon",        "data",
     "database",   "dbus",        "dconf",     "debug",         "default",      "desktop",       "dictionary",
     "docker",     "document",    "documents", "download",      "downloads",    "drive",         "editor",
     "electron",   "emacs",       "email",     "engine",        "environment",  "evolution",     "extensions",
     "fcitx",      "file",        "files",     "flatpak",       "folder",       "folders",       "font",
     "fontconfig", "fonts",       "game",      "games",         "git",          "gnupg",         "google",
     "graphics",   "gtk-2.0",     "gtk-3.0",   "gtk-4.0",       "gvfs",         "gvfs-metadata", "help",
     "helper",     "history",     "home",      "ibus",          "icon",         "icons",         "image",
     "images",     "index",       "info",      "install",       "installer",    "java",          "journal",
     "kernel",     "keyring",     "keyrings",  "kube",          "launcher",     "library",       "local",
     "locale",     "logs",        "mail",      "main",          "manager",      "maps",          "menu",
     "menus",      "messages",    "messenger", "microsoft",     "mime",         "mozilla",       "music",
     "nautilus",   "network",     "news",      "node",          "nodejs",       "notes",         "office",
     "package",    "packages",    "paint",     "password",      "passwords",    "perl",          "phone",
     "photo",      "photos",      "picture",   "pictures",      "pipewire",     "player",        "plugins",
     "podman",     "preferences", "print",     "printer",       "private",      "profile",       "profiles",
     "program",    "programs",    "project",   "projects",      "public",       "pulse",         "python",
     "python3",    "radio",       "reader",    "recent",        "recorder",     "registry",      "remote",
     "rename",     "ruby",        "runtime",   "rust",          "rustup",       "saved",         "screen",
     "screenshot", "screenshots", "script",    "scripts",       "search",       "secrets",       "security",
     "server",     "service",     "services",  "session",       "sessions",     "settings",      "setup",
     "share",      "shared",      "shell",     "shortcuts",     "snap",         "software",      "sound",
     "sounds",     "start",       "startup",   "state",         "status",       "storage",       "store",
     "studio",     "support",     "sync",      "system",        "systemd",      "temp",          "template",
     "templates",  "terminal",    "test",      "tests",         "text",         "theme",         "themes",
     "thumbnails", "tools",       "trash",     "tray",          "update",       "updater",       "updates",
     "user",       "users",       "utilities", "utility",       "vault",        "video",         "videos",
     "viewer",     "wallet",      "wallpaper", "wallpapers",    "wayland",      "weather",       "wine",
     "wine64",     "word",        "work",      "workspace",     "workspaces",   "writer",        "xorg",
     "xournal"});

} // namespace

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

bool isCommonWord(std::string_view name) {
    return std::ranges::find(commonWords, lowerCase(name)) != commonWords.end();
}

} // namespace orbel
