#include "Platform/Linux/Portable/LinuxPlaces.h"
#include "Safety/NeverTouch.h"
#include "Util/PathText.h"

#include <gtest/gtest.h>
#include <sstream>

namespace orbel {
namespace {

using Paths = std::vector<std::string>;

/// Each line of the text as a path in this folder.
Paths linesIn(const std::string& folder, const char* text) {
    Paths paths;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty())
            paths.push_back(joinedPath(folder, line));
    return paths;
}

// An entry that is dropped or misspelt leaves keys or mail without protection, and no other test would
// notice. The lists stand here a second time on purpose.

TEST(ProtectedLists, OfEveryPlatformAreComplete) {
    EXPECT_EQ(NeverTouch::roots("/no/home"), linesIn("/no/home", R"(
.claude/projects
.ssh
.gnupg
.Trash
Pictures
Library/Keychains
Library/Mail
Library/Messages
Library/Mobile Documents
Library/CloudStorage
Library/Calendars
Library/Accounts
Library/Application Support/MobileSync/Backup
Library/Application Support/com.apple.TCC
Library/Application Support/AddressBook
Library/Application Support/Ostrevo Orbel
Library/Safari
Library/Containers/com.apple.Safari
Library/Application Support/Google/Chrome
Library/Application Support/Arc
Library/Application Support/Firefox
Library/Application Support/BraveSoftware
Library/Application Support/Microsoft Edge
)"));
    const Paths systemRoots(NeverTouch::defaultSystemRoots.begin(), NeverTouch::defaultSystemRoots.end());
    EXPECT_EQ(systemRoots, linesIn("/", "System\nLibrary\nprivate\nusr\nopt\ncores\nbin\nsbin\nVolumes\n"));
}

TEST(ProtectedLists, OfLinuxAreComplete) {
    const auto places = platform::linuxPlaces("/no/home", {});
    EXPECT_EQ(places.neverTouch, linesIn("/no/home", R"(
.password-store
.pki
.netrc
.git-credentials
.aws
.azure
.kube
.docker
.oci
.step/secrets
.android/debug.keystore
.gnome2/keyrings
.kde/share/apps/kwallet
.ecryptfs
.Private
.cargo/credentials
.cargo/credentials.toml
.m2/settings-security.xml
.terraform.d/credentials
.terraform.d/credentials.tfrc.json
.bitcoin
.electrum
.ethereum/keystore
.mozilla
.librewolf
.waterfox
.tor-browser
.opera
snap/firefox
snap/chromium
snap/brave
.var/app/org.mozilla.firefox
.var/app/com.google.Chrome
.var/app/org.chromium.Chromium
.var/app/com.brave.Browser
.var/app/com.microsoft.Edge
.var/app/com.vivaldi.Vivaldi
.thunderbird
.icedove
.evolution
.claws-mail
.mutt
.purple
.maildir
.Maildir
.mail
Mail
Maildir
snap/thunderbird
.var/app/org.mozilla.Thunderbird
Dropbox
.dropbox
.dropbox-dist
Nextcloud
ownCloud
OneDrive
Insync
MEGA
Seafile
Google Drive
pCloudDrive
Sync
Yandex.Disk
SynologyDrive
ProtonDrive
.config/gh
.config/gcloud
.config/rclone
.config/goa-1.0
.config/keepassxc
.config/Bitwarden
.config/1Password
.config/mozilla
.config/chromium
.config/google-chrome
.config/microsoft-edge
.config/vivaldi
.config/opera
.config/evolution
.config/Nextcloud
.config/BraveSoftware
.local/share/Trash
.local/share/keyrings
.local/share/kwalletd
.local/share/evolution
.local/share/geary
.local/share/akonadi
.local/share/local-mail
.local/share/gvfs-metadata
.local/share/containers
.local/share/libvirt
.local/share/gnome-boxes
.local/share/flatpak
.local/share/JetBrains/Toolbox/apps
.local/share/Ostrevo Orbel
)"));
    EXPECT_EQ(places.systemRoots, linesIn("/", R"(
etc
boot
dev
proc
sys
lib
lib32
lib64
libx32
snap
nix
gnu
lost+found
root
srv
mnt
media
run
var/lib
var/cache
var/log
var/opt
var/db
var/spool
var/mail
)"));
}

} // namespace
} // namespace orbel
