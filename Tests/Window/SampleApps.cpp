#include "SampleApps.h"

#include <algorithm>

namespace orbel::test {

using Status = InstalledApp::Status;

SampleApps::SampleApps() {
    home.file("Applications/Aster.AppImage", 240'000);
    home.file(".cache/org.example.Aster/blobs", 180'000);
    home.file(".cache/org.example.Aster/more", 60'000);
    home.file(".config/org.example.Aster/settings", 12'000);
    home.file(".local/share/aster/notes", 30'000);
    home.file(".cache/org.example.Birch/thumbs", 90'000);
    home.file(".var/app/org.example.Willow/data/notes", 150'000);
    home.file(".cache/org.example.Willow/thumbs", 40'000);
    home.file("snap/poplar/common/state", 20'000);
    home.file("icons/aster.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="64" height="64">)"
                                 R"(<circle cx="32" cy="32" r="28" fill="#0b6170"/></svg>)");
    inventory.push_back({.path = home.path("Applications/Aster.AppImage"),
                         .name = "Aster",
                         .bundleID = "org.example.Aster",
                         .version = "4.1",
                         .status = Status::removable,
                         .source = "AppImage",
                         .icon = home.path("icons/aster.svg"),
                         .executables = {home.path("Applications/Aster.AppImage")},
                         .identifiers = {"org.example.Aster"},
                         .names = {"aster"}});
    inventory.push_back({.path = "/usr/share/applications/org.example.Birch.desktop",
                         .name = "Birch",
                         .bundleID = "org.example.Birch",
                         .version = "25.08.2-1",
                         .status = Status::needsAdmin,
                         .source = "Debian package",
                         .reason = "Remove it with the package manager",
                         .command = "sudo apt remove birch",
                         .manager = "dpkg",
                         .package = "birch",
                         .packageBytes = 312'000'000,
                         .identifiers = {"org.example.Birch"}});
    inventory.push_back({.path = "/usr/share/applications/cedar.desktop",
                         .name = "Cedar",
                         .bundleID = "cedar",
                         .status = Status::system,
                         .source = "Debian package",
                         .reason = "A part of the system",
                         .packageBytes = 64'000'000});
    for (const std::string name : {"Dogwood", "Elder", "Fir with a name that goes on and on", "Gingko",
                                   "Hazel", "Ivy", "Juniper", "Larch", "Maple", "Oak"})
        inventory.push_back(
            {.path = "/var/lib/flatpak/exports/share/applications/org.example." + name + ".desktop",
             .name = name,
             .bundleID = "org.example." + name,
             .status = Status::needsAdmin,
             .source = "Flatpak (system)",
             .reason = "Remove it with Flatpak",
             .command = "flatpak uninstall --system org.example." + name});
    inventory.push_back({.path = "/usr/share/applications/zz.desktop", .name = "Hidden", .isHidden = true});
}

const InstalledApp& SampleApps::app(const std::string& name) const {
    return *std::ranges::find(inventory, name, &InstalledApp::name);
}

platform::InstalledIds SampleApps::installedIds() {
    return {.packages = {{"dpkg", {"base", "birch"}}, {"flatpak", {}}, {"snap", {}}}};
}

platform::RunningProgram SampleApps::runningAster() const {
    return {.pid = 4711, .name = "Aster", .paths = {app("Aster").path}};
}

} // namespace orbel::test
