#include "Support/AppHome.h"

#include "Platform/Linux/Portable/LinuxApplications.h"
#include "Platform/Linux/Portable/LinuxInstalledIds.h"
#include "Platform/Linux/Portable/LinuxPlaces.h"
#include "Support/RunProgram.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace orbel::test {

AppHome::AppHome() : user(::geteuid()) {}

std::string AppHome::appImage(std::string_view relative) const {
    const auto path = file(relative, std::string_view("\x7F"
                                                      "ELF\x02\x01\x01\0AI\x02 and the rest",
                                                      24));
    ::chmod(path.c_str(), 0755);
    return path;
}

std::string AppHome::appImage(std::string_view relative, const std::string& squashfs) const {
    constexpr std::size_t headSize = 64;
    constexpr std::size_t headersAt =
        0x28; // says where the section headers are: there are none, behind the head
    std::string head("\x7F"
                     "ELF\x02\x01\x01\0AI\x02",
                     11);
    head.resize(headSize);
    head[headersAt] = headSize;
    const auto path = file(relative, head + readRegularFile(squashfs, 1 << 20).value());
    ::chmod(path.c_str(), 0755);
    return path;
}

std::string AppHome::program(std::string_view relative) const {
    const auto path = file(relative, std::string_view("#!/bin/sh\n"));
    ::chmod(path.c_str(), 0755);
    return path;
}

std::string AppHome::launcher(std::string_view id, const std::string& exec, std::string_view more) const {
    return file(".local/share/applications/" + std::string(id) + ".desktop",
                "[Desktop Entry]\nType=Application\nName=" + std::string(id) + "\nExec=" + exec + "\n"
                    + std::string(more));
}

std::string AppHome::systemLauncher(std::string_view id, const std::string& exec,
                                    std::string_view more) const {
    return file("system/applications/" + std::string(id) + ".desktop",
                "[Desktop Entry]\nType=Application\nName=" + std::string(id) + "\nExec=" + exec + "\n"
                    + std::string(more));
}

platform::ExecResolver AppHome::resolver() const {
    return {.searchPath = {path("usr/bin")},
            .flatpakInstallations = {path(".local/share/flatpak"), path("var/lib/flatpak")},
            .snapFolders = {path("snaps")},
            .outOfReach = {},
            .namedInstallations = namedInstallations};
}

platform::InstalledIds AppHome::installedIds() const {
    auto search = platform::installedIdSearch(path(), resolver(), {.dataFolders = path("system")});
    const auto isReal = [this](const std::string& folder) { return !isPathInside(folder, path()); };
    std::erase_if(search.entryFolders, isReal);
    std::erase_if(search.namedFolders, isReal);
    search.snapFiles = path("snapd");
    search.databases = {.dpkg = path("dpkg"), .pacman = path("pacman"), .rpm = {}};
    return platform::linuxInstalledIds(search);
}

std::vector<InstalledApp> AppHome::inventory() const {
    const auto places = platform::linuxPlaces(path(), {});
    auto apps = platform::linuxApplications(
        {.home = path(),
         .folders = {path(".local/share/applications"), path("system/applications"),
                     path(".local/share/flatpak/exports/share/applications"), path("Applications"),
                     path("bin"), path("Downloads"), path("Desktop")},
         .programFolders = places.programFolders,
         .resolver = resolver(),
         .owners = [this](const std::set<std::string>&) { return owners; },
         .isWritable = [](const std::string& place) { return ::access(place.c_str(), W_OK) == 0; },
         .user = user,
         .run = [](const std::vector<std::string>& words) -> std::optional<std::string> {
             return runProgram(words).output;
         }});
    std::ranges::sort(apps, {}, &InstalledApp::path);
    return apps;
}

InstalledApp AppHome::app(std::string_view name) const {
    const auto apps = inventory();
    const auto found = std::ranges::find(apps, name, &InstalledApp::name);
    EXPECT_NE(found, apps.end()) << name;
    return found == apps.end() ? InstalledApp{.path = "/none", .name = "none"} : *found;
}

std::vector<InstalledApp> AppHome::othersThan(const InstalledApp& app) const {
    auto apps = inventory();
    std::erase_if(apps, [&](const InstalledApp& other) { return other.path == app.path; });
    return apps;
}

LeftoverMatcher AppHome::matcher() const {
    return {path(), path("systemLibrary"), platform::linuxPlaces(path(), {}),
            [this](const std::string& name) {
                const auto found = otherPrograms.find(name);
                return found == otherPrograms.end() ? std::string() : found->second;
            }};
}

} // namespace orbel::test
