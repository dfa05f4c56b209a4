#include "Delete/LiveTrash.h"
#include "Find/RemovedApps.h"
#include "Journal/LiveRestore.h"
#include "Journal/PutBack.h"
#include "Support/AppHome.h"
#include "Support/RunProgram.h"
#include "Util/ReadFile.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

/// A home, and one look after another at what was removed from it.
struct RemovedHome : test::AppHome {
    RemovedApps::Look look(const InUseChecker::OpenFiles& openFiles = {}) const {
        const auto apps = inventory();
        const auto lists = matcher();
        const InstalledNames installed(apps, installedIds(), running);
        return RemovedApps::look({.apps = apps,
                                  .matcher = lists,
                                  .policy = policy,
                                  .installed = installed,
                                  .openFiles = openFiles},
                                 seen, now);
    }
    /// "kind id: item, item" of each, ticked items with "!" and refused ones with "-".
    Lines lines() const {
        Lines found;
        for (const auto& app : look().apps) {
            std::string line = std::string(rawValue(app.kind)) + " " + app.id + ":";
            for (const auto& item : app.items)
                line += std::string(" ")
                        + (item.preselected      ? "!"
                           : item.isSelectable() ? ""
                                                 : "-")
                        + item.path.substr(path().size() + 1);
            found.push_back(line);
        }
        std::ranges::sort(found);
        return found;
    }

    std::vector<platform::RunningProgram> running;
    SeenPackages seen{path(".local/share/Ostrevo Orbel/installed.json")};
};

TEST(RemovedAppsTest, OnlyWholeIdsThatNothingHasAreListed) {
    const RemovedHome home;
    for (const auto* folder :
         {".config/org.example.Tool", ".cache/ORG.example.tool", ".local/state/de.example.Other",
          // two parts, no domain, no id, shared by programs, a part of something longer
          ".config/org.example", ".config/conf.example.Tool", ".config/org..Tool",
          ".config/org.ex ample.Tool", ".config/org.freedesktop.Thing",
          ".local/share/org.kde.syntax-highlighting", ".local/share/deeper/org.example.Tool",
          "org.example.Tool", ".org.example.Tool"})
        home.folder(folder);
    home.file(".config/org.example.notes.txt");
    home.file(".local/share/org.example.File");
    home.link(".local/share/org.example.Link", home.folder("elsewhere/data"));
    EXPECT_EQ(home.lines(),
              (Lines{"id de.example.Other: .local/state/de.example.Other",
                     "id org.example.File: .local/share/org.example.File",
                     "id org.example.Tool: !.cache/ORG.example.tool .config/org.example.Tool"}));
}

TEST(RemovedAppsTest, WhatSomethingInstalledHasIsNotListed) {
    using Install = std::function<void(RemovedHome&)>;
    const auto launcherThat = [](const char* line) {
        return [line](RemovedHome& home) { home.systemLauncher("other", "/bin/true", line); };
    };
    const std::vector<std::pair<const char*, Install>> cases{
        {"hidden launcher", [](auto& home) { home.launcher("org.example.tool", "tool", "Hidden=true\n"); }},
        {"launcher of a longer id", [](auto& home) { home.systemLauncher("org.example.Tool.Viewer", "x"); }},
        {"launcher of a shorter id", [](auto& home) { home.systemLauncher("org.example", "x"); }},
        {"launcher that starts it",
         launcherThat("Actions=x\n[Desktop Action x]\nExec=run org.example.Tool\n")},
        {"a launcher's window", launcherThat("StartupWMClass=org.example.Tool\n")},
        {"service", [](auto& home) { home.file("system/dbus-1/services/org.example.Tool.service"); }},
        {"service by its text",
         [](auto& home) {
             home.file("system/dbus-1/system-services/x.service", "[D-BUS Service]\nName=org.example.Tool\n");
         }},
        {"service of several",
         [](auto& home) { home.file(".config/systemd/user/org.example.Tool@.service"); }},
        {"start at login", [](auto& home) { home.file(".config/autostart/org.example.Tool.desktop"); }},
        {"program", [](auto& home) { home.program("usr/bin/org.example.Tool"); }},
        {"description", [](auto& home) { home.file("system/metainfo/org.example.Tool.metainfo.xml"); }},
        {"settings", [](auto& home) { home.file("system/glib-2.0/schemas/org.example.Tool.gschema.xml"); }},
        {"icon", [](auto& home) { home.file("system/icons/hicolor/48x48/apps/org.example.Tool.png"); }},
        {"package", [](auto& home) { home.file("pacman/org.example.tool-1.2-1/desc"); }},
        {"flatpak", [](auto& home) { home.folder("var/lib/flatpak/app/org.example.Tool"); }},
        {"launcher of the program's name",
         [](auto& home) {
             home.program("usr/bin/viewer");
             home.systemLauncher("tool-viewer", "viewer");
         }},
        {"AppImage", [](auto& home) { home.appImage("Applications/tool_1.2_amd64.AppImage"); }},
        {"process", [](auto& home) { home.running = {{.pid = 1, .paths = {"/opt/org.example.Tool/run"}}}; }},
        {"process from it",
         [](auto& home) {
             home.running = {{.pid = 1, .paths = {home.path(".config/org.example.Tool/run")}}};
         }},
        {"launcher into it",
         [](auto& home) { home.launcher("x", "\"" + home.path(".config/org.example.Tool/run") + "\" %U"); }},
        {"link in the search path into it",
         [](auto& home) { home.link("usr/bin/x", home.file(".config/org.example.Tool/run")); }}};
    for (const auto& [name, install] : cases) {
        RemovedHome home;
        home.folder(".config/org.example.Tool");
        EXPECT_EQ(home.lines().size(), 1) << name;
        install(home);
        EXPECT_EQ(home.lines(), Lines()) << name;
    }
    // What lists the removed too, and what is only like it.
    RemovedHome home;
    home.folder(".config/org.example.Tool");
    home.file(".local/share/applications/mimeapps.list", "text/plain=org.example.Tool.desktop\n");
    home.program("usr/bin/org.example.Toolbox");
    home.program("usr/bin/org");
    EXPECT_EQ(home.lines().size(), 1);
    home.folder(".cache/com.birchwood.app");
    home.folder(".cache/com.birchwood.Player");
    home.appImage("Applications/Birchwood.AppImage");
    EXPECT_EQ(home.lines(), (Lines{"id com.birchwood.Player: !.cache/com.birchwood.Player",
                                   "id org.example.Tool: .config/org.example.Tool"}));
}

TEST(RemovedAppsTest, ASandboxIsOneItemWhenItsApplicationIsInstalledNowhere) {
    RemovedHome home;
    for (const auto* folder :
         {".var/app/org.example.Gone/cache", ".var/app/org.example.User", ".var/app/org.example.System",
          ".var/app/org.example.Platform", ".var/app/backup", ".config/org.example.Gone", "snap/gone/common",
          "snap/tool", "snap/tool_two", "snap/tool_three", "snap/disabled", "snap/base", "snap/bin",
          "snap/My Files", ".local/share/flatpak/app/org.example.User",
          "var/lib/flatpak/app/org.example.System", "var/lib/flatpak/runtime/org.example.Platform",
          "snaps/tool", "snaps/bin"})
        home.folder(folder);
    home.file("snapd/tool_two_12.snap");
    home.file("snapd/disabled_3.snap");
    home.file("snapd/base_two_4.snap");
    home.file("snap/file");
    const std::string gone = "flatpak org.example.Gone: .config/org.example.Gone .var/app/org.example.Gone";
    const Lines snaps{"snap gone: snap/gone", "snap tool_three: snap/tool_three"};
    EXPECT_EQ(home.lines(), (Lines{gone, snaps[0], snaps[1]}));

    home.namedInstallations = {home.path("disk/flatpak")};
    EXPECT_EQ(home.lines(), (Lines{"id org.example.Gone: .config/org.example.Gone", snaps[0], snaps[1]}))
        << "an installation may be on a disk that is not there";
    home.namedInstallations.clear();
    fs::remove_all(home.path("snapd"));
    home.file("snapd");
    EXPECT_EQ(home.lines(), Lines{gone}) << "one that cannot be read";
    home.file("system/dbus-1/services");
    EXPECT_EQ(home.lines(), Lines{"flatpak org.example.Gone: .var/app/org.example.Gone"});
}

TEST(RemovedAppsTest, TheLargestComesFirstAndWhatMustStayIsRefused) {
    RemovedHome home;
    home.file(".config/org.example.Small/x", 10'000);
    home.file(".var/app/org.example.Large/x", 90'000);
    home.file(".config/org.example.Photos/Family.photoslibrary/x", 10'000);
    home.file(".cache/org.example.Used/x", 30'000);
    home.file(".var/app/org.mozilla.firefox/x");
    MappedFilesSnapshot snapshot{.takenAt = home.now, .processes = {}};
    snapshot.processes.processes.push_back(
        {.pid = 7, .name = "writer", .files = {{.path = home.path(".cache/org.example.Used/x")}}});
    Lines found;
    for (const auto& app : home.look(InUseChecker::OpenFiles(snapshot)).apps)
        for (const auto& item : app.items)
            found.push_back(app.id + " " + item.blockedReason.value_or("may move"));
    EXPECT_EQ(found, (Lines{"org.example.Large may move",
                            "org.example.Photos Contains protected data: "
                            "~/.config/org.example.Photos/Family.photoslibrary",
                            "org.example.Small may move", "org.example.Used In use by writer",
                            "org.mozilla.firefox Protected: ~/.var/app/org.mozilla.firefox"}));
}

TEST(RemovedAppsTest, AllOfItGoesToTheTrashAndComesBack) {
    const RemovedHome home;
    home.file(".var/app/org.example.Gone/config/x", 9000);
    home.file(".config/org.example.Gone/x");
    home.file(".cache/org.example.Gone/x");
    home.file("snap/gone/1/x");
    std::vector<DeletionItem> items;
    for (auto& app : home.look().apps)
        std::ranges::move(app.items, std::back_inserter(items));
    ASSERT_EQ(items.size(), 4);
    Trasher trasher = home.trasher;
    trasher.trash = std::make_shared<LiveTrash>(home.trash());
    for (const auto& skipped : trasher.run(items, "session", nullptr, nullptr).skipped)
        ADD_FAILURE() << skipped.path << ": " << skipped.reason;
    EXPECT_EQ(home.lines(), Lines());
    PutBack(home.policy, home.journal, std::make_shared<LiveRestore>()).putBackSession("session");
    EXPECT_EQ(home.lines(), (Lines{"flatpak org.example.Gone: !.cache/org.example.Gone "
                                   ".config/org.example.Gone .var/app/org.example.Gone",
                                   "snap gone: snap/gone"}));
}

/// A package of dpkg's own, with a launcher and a program, in the home's database and folders.
class RemovedPackageTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const auto* folder : {"dpkg/info", "dpkg/updates", "dpkg/triggers"})
            home.folder(folder);
        home.file("dpkg/available", "");
        home.file("dpkg/status",
                  "Package: base\nStatus: install ok installed\nVersion: 1\nArchitecture: all\n"
                  "Maintainer: x\nDescription: x\n\n");
        const auto inPackage = "build" + home.path() + "/";
        home.file(inPackage + "system/applications/org.example.Birch.desktop",
                  "[Desktop Entry]\nType=Application\nName=Birch\nExec=birchwood\n");
        home.program(inPackage + "usr/bin/birchwood");
        home.file("build/DEBIAN/control",
                  "Package: birchwood\nVersion: 1.0\nArchitecture: all\nMaintainer: x "
                  "<x@example.org>\nDescription: a tree\n");
        const auto built = test::runProgram({"dpkg-deb", "--build", home.path("build"), package});
        if (built.status != 0)
            GTEST_SKIP() << "dpkg-deb builds no package here: " << built.errors;
        const auto first = dpkg({"--install", package});
        if (first.status != 0)
            GTEST_SKIP() << "dpkg installs nothing into a folder here: " << first.errors;
        for (const auto* file : {".config/org.example.Birch/x", ".cache/Birchwood/x", ".local/share/birch/x"})
            home.file(file);
    }
    test::ProgramRun dpkg(Lines words) const {
        words.insert(words.begin(), {"dpkg", "--force-not-root", "--force-bad-path", "--admindir",
                                     home.path("dpkg"), "--log", "/dev/null"});
        return test::runProgram(std::move(words));
    }
    /// The next day's look.
    Lines look() {
        home.now += std::chrono::days(1);
        home.owners = platform::packageOwners(
            {home.path("system/applications/org.example.Birch.desktop"), home.path("usr/bin/birchwood")},
            {.dpkg = home.path("dpkg"), .pacman = "", .rpm = {}}, {});
        return home.lines();
    }

    RemovedHome home;
    const std::string package = home.path("birchwood.deb");
    const Lines left{"package org.example.Birch: !.cache/Birchwood .config/org.example.Birch"};
};

TEST_F(RemovedPackageTest, IsKnownToHaveBeenInstalled) {
    EXPECT_EQ(look(), Lines());
    ASSERT_EQ(dpkg({"--remove", "birchwood"}).status, 0);
    EXPECT_EQ(look(), left);
    const auto app = home.look().apps.at(0);
    EXPECT_EQ(app.name, "Birch");
    EXPECT_EQ(app.lastSeen, "2025-02-01") << "the day of the first look, not of this one";
    EXPECT_TRUE(LeftoverItem::evidence(app.items[0]).contains("birchwood was installed on 2025-02-01"));

    fs::rename(home.path("dpkg/status"), home.path("dpkg/aside"));
    EXPECT_FALSE(std::ranges::any_of(look(), [](const auto& line) { return line.starts_with("package"); }))
        << "without an answer nothing was removed";
    fs::rename(home.path("dpkg/aside"), home.path("dpkg/status"));
    home.running = {{.pid = 1, .paths = {"/opt/x/birchwood"}}};
    EXPECT_EQ(look(), Lines{"package org.example.Birch: .config/org.example.Birch"});
    home.running.clear();
    EXPECT_EQ(look(), left);

    ASSERT_EQ(dpkg({"--install", package}).status, 0);
    EXPECT_EQ(look(), Lines()) << "it is back";
    ASSERT_EQ(dpkg({"--remove", "birchwood"}).status, 0);
    fs::remove_all(home.path(".config/org.example.Birch"));
    fs::remove_all(home.path(".cache/Birchwood"));
    EXPECT_EQ(look(), Lines());
    EXPECT_EQ(home.seen.read().content, SeenPackages::Content()) << "nothing is left to be known";
}

TEST_F(RemovedPackageTest, StaysAtHandUntilItIsDismissed) {
    look();
    ASSERT_EQ(dpkg({"--remove", "birchwood"}).status, 0);
    ASSERT_EQ(look(), left);
    ASSERT_TRUE(home.seen.dismiss(home.look().apps.at(0).key()));
    EXPECT_EQ(look(), Lines());
    EXPECT_EQ(look(), Lines()) << "the next day too";
    ASSERT_EQ(dpkg({"--install", package}).status, 0);
    look();
    ASSERT_EQ(dpkg({"--remove", "birchwood"}).status, 0);
    EXPECT_EQ(look(), left) << "removed once more";
}

TEST_F(RemovedPackageTest, OnlyAFileOfOurOwnIsBelieved) {
    const auto path = home.path(".local/share/Ostrevo Orbel/installed.json");
    look();
    struct stat status {};
    ASSERT_EQ(::lstat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    const auto content = home.seen.read().content;
    EXPECT_EQ(content.apps.size(), 1);
    for (const std::string damage : {"", "[]", R"({"format":1,"apps":[{}],"dismissed":[]})",
                                     R"({"format":1,"apps":7,"dismissed":[]})", R"({"format":2})"}) {
        fs::remove(path);
        home.file(".local/share/Ostrevo Orbel/installed.json", damage);
        const auto failures = home.look().failures;
        ASSERT_EQ(failures.size(), 1) << damage;
        EXPECT_TRUE(failures[0].contains("is damaged"));
        EXPECT_EQ(home.seen.read().content, content) << "it begins anew";
    }
    fs::rename(path, path + ".aside");
    fs::create_symlink(path + ".aside", path);
    EXPECT_EQ(home.look().failures.size(), 2) << "neither read nor written";
    EXPECT_TRUE(fs::is_symlink(path));
}

} // namespace
} // namespace orbel
