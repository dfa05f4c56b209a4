#include "Platform/Linux/Portable/LinuxApplications.h"
#include "Support/AppHome.h"
#include "Support/RunProgram.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel::platform {
namespace {

using Status = InstalledApp::Status;
using Words = std::vector<std::string>;
using enum PackageOwner::Manager;

class LinuxApplicationsTest : public ::testing::Test {
protected:
    /// Status and what the user is told to do.
    std::pair<Status, std::string> fate(std::string_view name) const {
        const auto app = home.app(name);
        return {app.status, app.command.empty() ? app.reason : app.command};
    }

    test::AppHome home;
};

TEST_F(LinuxApplicationsTest, TellsWhatCanBeDoneAboutEachKind) {
    home.appImage("Applications/tool.AppImage");
    home.launcher("org.example.Tool", home.path("Applications/tool.AppImage") + " %U");
    home.program(".local/opt/Suite/bin/suite");
    home.launcher("suite", "\"" + home.path(".local/opt/Suite/bin/suite") + "\"");
    home.program("usr/bin/editor");
    home.owners[home.systemLauncher("editor", "editor %F")] = {
        .manager = dpkg, .name = "editor-gtk", .version = "1-2"};
    home.owners[home.systemLauncher("panel", "editor")] = {
        .manager = dpkg, .name = "panel", .isEssential = true};
    home.owners[home.systemLauncher("odd", "editor")] = {.manager = dpkg, .name = "x; rm -rf ~"};
    home.owners[home.systemLauncher("red", "editor")] = {.manager = rpm, .name = "red"};
    home.owners[home.systemLauncher("arch", "editor")] = {.manager = pacman, .name = "arch"};
    home.folder(".local/share/flatpak/app/org.example.Flat");
    home.file(".local/share/flatpak/exports/share/applications/org.example.Flat.desktop",
              std::string_view("[Desktop Entry]\nType=Application\nName=flat\nX-Flatpak=org.example.Flat\n"
                               "Exec=/usr/bin/flatpak run org.example.Flat"));
    home.folder("var/lib/flatpak/app/org.example.Sys");
    home.systemLauncher("sys", "flatpak run org.example.Sys");
    home.folder("snaps/snappy");
    home.systemLauncher("snappy_snappy", "snap run snappy", "X-SnapInstanceName=snappy\n");
    home.launcher("web", "editor --app=https://example.org");
    home.launcher("game", "editor steam://rungameid/1");
    home.launcher("windows", "env WINEPREFIX=/x editor start");
    home.launcher("mine", "editor --mine");
    home.launcher("gone", "/nowhere/gone");
    home.launcher("doubtful", "/media/nowhere/x");

    const std::vector<std::tuple<std::string, Status, std::string>> table{
        {"org.example.Tool", Status::removable, ""},
        {"suite", Status::removable, ""},
        {"editor", Status::needsAdmin, "sudo apt remove editor-gtk"},
        {"panel", Status::system, "A part of the system"},
        {"odd", Status::needsAdmin, "Remove it with the package manager"},
        {"red", Status::needsAdmin, "sudo dnf remove red"},
        {"arch", Status::needsAdmin, "sudo pacman -R arch"},
        {"flat", Status::unsupported, "flatpak uninstall --user org.example.Flat"},
        {"sys", Status::needsAdmin, "flatpak uninstall --system org.example.Sys"},
        {"snappy_snappy", Status::needsAdmin, "sudo snap remove snappy"},
        {"web", Status::unsupported, "A web page with a window of its own: remove it in the browser"},
        {"game", Status::unsupported, "Remove it in Steam"},
        {"windows", Status::unsupported, "A Windows program: remove it with its own uninstaller"},
        {"mine", Status::unsupported,
         "Only starts " + home.path("usr/bin/editor") + " and is no installation of its own"},
        {"doubtful", Status::unsupported, "Only starts /media/nowhere/x and is no installation of its own"},
    };
    for (const auto& [name, status, advice] : table)
        EXPECT_EQ(fate(name), std::pair(status, advice)) << name;
    EXPECT_EQ(home.inventory().size(), table.size()) << "a launcher of nothing is no application";
    EXPECT_EQ(home.app("org.example.Tool").path, home.path("Applications/tool.AppImage"));
    EXPECT_EQ(home.app("suite").path, home.path(".local/opt/Suite"));
    EXPECT_EQ(home.app("editor").version, "1-2");
}

TEST_F(LinuxApplicationsTest, OneApplicationWithSeveralLaunchersIsOne) {
    home.program("usr/bin/suite");
    const auto hidden =
        home.systemLauncher("a-url", "suite --url", "NoDisplay=true\nStartupWMClass=Hidden\n");
    const auto writer = home.systemLauncher("writer", "suite --writer", "Icon=writer\n");
    for (const auto& path : {hidden, writer, home.path("usr/bin/suite")})
        home.owners[path] = {.manager = dpkg, .name = "suite"};
    home.systemLauncher("nobody", "usr/bin/suite", "NoDisplay=true\n");
    const auto app = home.app("writer");
    EXPECT_EQ(app.identifiers, (Words{"a-url", "writer"}));
    EXPECT_EQ(app.names, (Words{"suite", "Hidden", "writer"}));
    EXPECT_FALSE(app.isHidden);
    EXPECT_TRUE(home.app("nobody").isHidden);

    // The one that is called as the package speaks for it, also after another of the same program.
    const auto package = [&](const std::string& id, const std::string& more) {
        home.owners[home.systemLauncher(id, "painter-2.10", more)] = {.manager = dpkg, .name = "painter"};
    };
    home.owners[home.program("usr/bin/painter-2.10")] = {.manager = dpkg, .name = "painter"};
    package("b-help", "");
    package("c-painter", "NoDisplay=true\n");
    package("org.example.Painter", "");
    package("zoo", "");
    EXPECT_EQ(home.app("org.example.Painter").identifiers.size(), 4U);

    // The user's own launcher takes the system's place, and hides it when it says so.
    home.launcher("writer", "suite --mine", "Name=mine\n");
    EXPECT_EQ(home.app("mine").command, "sudo apt remove suite");
    home.launcher("writer", "suite", "Hidden=true\n");
    EXPECT_EQ(home.inventory().size(), 3);
    EXPECT_TRUE(home.inventory()[0].isHidden);
}

TEST_F(LinuxApplicationsTest, NothingIsRemovableThatIsAnothersOrHoldsMoreThanIsShown) {
    const auto image = home.appImage("Applications/tool.AppImage");
    home.program("opt/tools/a");
    home.program("opt/tools/b");
    home.launcher("a", home.path("opt/tools/a"));
    home.launcher("b", home.path("opt/tools/b"));
    home.program("elsewhere/app/run");
    home.link("opt/linked", home.path("elsewhere/app"));
    home.launcher("linked", home.path("opt/linked/run"));
    home.program("opt/script");
    home.launcher("script", home.path("opt/script"));
    home.file("Applications/text.AppImage", std::string_view("no program"));
    home.link("Applications/link.AppImage", image);
    EXPECT_EQ(home.inventory().size(), 4);
    EXPECT_EQ(fate("a"),
              std::pair(Status::unsupported, std::string("Several applications are in this folder: a, b")));
    EXPECT_EQ(home.app("linked").status, Status::unsupported);
    EXPECT_EQ(home.app("script").status, Status::unsupported) << "the folder holds more than this file";
    EXPECT_EQ(home.app("tool").status, Status::removable);
    for (const std::string script : {"one", "two"}) {
        home.file("opt/pair/" + script + ".js");
        home.launcher(script, home.path("opt/pair/engine") + " " + home.path("opt/pair/" + script + ".js"));
    }
    home.program("opt/pair/engine");
    EXPECT_EQ(home.app("one").status, Status::unsupported) << "one engine runs two applications";
    home.user += 1;
    EXPECT_EQ(fate("tool"), std::pair(Status::needsAdmin, std::string("Belongs to another user")));
}

TEST_F(LinuxApplicationsTest, ALauncherInAnAppImageNamesIt) {
    const auto launcher = std::string_view("[Desktop Entry]\nType=Application\nName=Drawing Board\n"
                                           "StartupWMClass=Board\nX-AppImage-Version=3.2\nExec=board\n");
    home.file("content/usr/share/applications/org.example.Board.desktop", launcher);
    home.link("content/org.example.Board.desktop", "usr/share/applications/org.example.Board.desktop");
    home.file("content/AppRun");
    const auto made =
        test::runProgram({"mksquashfs", home.path("content"), home.path("image"), "-quiet", "-no-progress"});
    if (made.status != 0)
        GTEST_SKIP() << "squashfs-tools is not installed";
    const auto image = home.appImage("Downloads/drawing-3.1-x86_64.AppImage", home.path("image"));
    auto app = home.app("Drawing Board");
    EXPECT_EQ(app.path, image);
    EXPECT_EQ(app.version, "3.2");
    EXPECT_EQ(app.bundleID, "org.example.Board");
    EXPECT_EQ(app.identifiers, Words{"org.example.Board"});
    EXPECT_EQ(app.names, (Words{"drawing", "Board"}));
    EXPECT_EQ(app.status, Status::removable);

    home.launcher("board", image, "Name=My board\n");
    app = home.app("My board");
    EXPECT_EQ(app.identifiers, (Words{"board", "org.example.Board"}));

    home.file("image", std::string_view("hsqs and nothing else"));
    home.appImage("Desktop/Broken-1.AppImage", home.path("image"));
    EXPECT_EQ(home.app("Broken").version, "1");
}

TEST_F(LinuxApplicationsTest, OnlyFilesThatServeNothingElseGoAlong) {
    const auto image = home.appImage("Applications/tool.AppImage");
    const auto launcher = home.launcher("tool", image, "Icon=tool\n");
    const auto icon = home.file(".local/share/icons/hicolor/48x48/apps/tool.png");
    const auto other = home.file(".local/share/icons/tool.svg");
    home.file(".local/share/icons/hicolor/48x48/apps/tool2.png");
    const auto command = home.link(".local/bin/tool", image);
    home.link(".local/bin/other", "/usr/bin/env");
    home.link(".local/share/icons/hicolor/16x16/apps/tool.png", icon);
    home.link(".local/share/applications/linked.desktop",
              home.file("elsewhere/tool.desktop",
                        std::string_view("[Desktop Entry]\nType=Application\nName=x\nExec=")));
    EXPECT_EQ(home.app("tool").ownFiles, (Words{launcher, command, other, icon}));
    home.appImage("Applications/other.AppImage");
    home.launcher("other", home.path("Applications/other.AppImage"), "Icon=tool\n");
    EXPECT_EQ(home.app("tool").ownFiles, (Words{launcher, command})) << "the icon serves two";
}

TEST_F(LinuxApplicationsTest, NoFileMakesItFail) {
    for (const std::string text :
         {"", "[Desktop Entry]",
          "[Desktop Entry]\nType=Application\nExec=", "[Desktop Entry]\nType=Application\nExec=\"",
          "[Desktop Entry]\nType=Application\nExec=flatpak run\n", "[Desktop Entry]\nType=Link\nExec=x",
          "[Desktop Entry]\nType=Application\nExec=flatpak run ../../x.y.z\nX-Flatpak=../../x\n",
          "[Desktop Entry]\nType=Application\nExec=x\nX-SnapInstanceName=-rf\n", "\xFF\xFE[\n=\n[]"})
        home.file(".local/share/applications/" + std::to_string(text.size()) + ".desktop", text);
    home.folder(".local/share/applications/folder.desktop");
    home.launcher("bad\xFF\n\033name", "/media/nowhere/x", "Icon=../../../x\n");
    for (const auto& app : home.inventory())
        EXPECT_TRUE(app.status == Status::unsupported && app.command.empty()) << app.name;
    EXPECT_EQ(home.app("bad\uFFFD").bundleID, "bad\uFFFD  name");
}

TEST(PackageOwners, AreReadFromTheDatabases) {
    const test::TemporaryFolder folder;
    folder.file("dpkg/info/editor.list",
                std::string_view("/.\n/usr\n/bin/editor\n/usr/share/applications/e.desktop\n"));
    folder.file("dpkg/info/multi:i386.list", std::string_view("/usr/bin/multi\n"));
    folder.file("dpkg/info/removed.list", std::string_view("/usr/bin/removed\n"));
    folder.file("dpkg/info/base.list", std::string_view("/usr/bin/base"));
    folder.file("dpkg/info/shell.list", std::string_view("/usr/bin/shell"));
    folder.file(
        "dpkg/status",
        std::string_view("Package: editor\nStatus: install ok installed\nPriority: optional\nVersion: 1:2-3\n"
                         "Installed-Size: 300\n"
                         "Description: x\n Essential: yes\n\n"
                         "Package: multi\nStatus: install ok installed\nArchitecture: amd64\nVersion: 1\n\n"
                         "Package: multi\nStatus: install ok installed\nArchitecture: i386\nVersion: 2\n"
                         "Installed-Size: many\n\n"
                         "Package: removed\nStatus: deinstall ok config-files\nVersion: 1\n\n"
                         "Package: shell\nEssential: yes\nStatus: install ok installed\n\n"
                         "Package: base\nPriority: required\nStatus: install ok installed"));
    folder.file("pacman/arch-tool-1.2-3/files", std::string_view("%FILES%\nusr/\nusr/bin/tool\n"));
    folder.file("pacman/arch-tool-1.2-3/desc", std::string_view("%NAME%\narch-tool\n\n%SIZE%\n5000\n"));
    folder.file("pacman/odd/files", std::string_view("usr/bin/odd\n"));
    const PackageDatabases databases{.dpkg = folder.path("dpkg"), .pacman = folder.path("pacman"), .rpm = {}};
    const auto owners = packageOwners(
        {"/usr/bin/editor", "/usr/share/applications/e.desktop", "/usr/bin/multi", "/usr/bin/removed",
         "/usr/bin/base", "/usr/bin/shell", "/usr/bin/tool", "/usr/bin/odd", "/usr/bin/nobody", ""},
        databases, nullptr);
    const auto is = [&](const std::string& path, const PackageOwner& owner) {
        return owners.contains(path) && owners.at(path) == owner;
    };
    EXPECT_EQ(owners.size(), 6);
    EXPECT_TRUE(
        is("/usr/bin/editor",
           {.manager = PackageOwner::Manager::dpkg, .name = "editor", .version = "1:2-3", .bytes = 307'200}));
    EXPECT_TRUE(
        is("/usr/bin/multi", {.manager = PackageOwner::Manager::dpkg, .name = "multi:i386", .version = "2"}));
    EXPECT_TRUE(owners.at("/usr/bin/base").isEssential && owners.at("/usr/bin/shell").isEssential);
    EXPECT_TRUE(is(
        "/usr/bin/tool",
        {.manager = PackageOwner::Manager::pacman, .name = "arch-tool", .version = "1.2-3", .bytes = 5'000}));
}

TEST(PackageOwners, AreAskedOfRpmInOneGo) {
    const test::TemporaryFolder folder;
    const PackageDatabases databases{.dpkg = "/none", .pacman = "/none", .rpm = {folder.path()}};
    int runs = 0;
    const RunProgram rpm = [&](const std::vector<std::string>& words) {
        ++runs;
        EXPECT_EQ(words.front(), "rpm");
        return "file /usr/bin/x is not owned by any "
               "package\nred\t1-2\t/usr/bin/red\nred\t1-2\t/usr/bin/other\n\t\n";
    };
    const auto owners = packageOwners({"/usr/bin/red", "/usr/bin/x"}, databases, rpm);
    EXPECT_EQ(owners.size(), 1);
    EXPECT_EQ(owners.at("/usr/bin/red").version, "1-2");
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(packageOwners({"/usr/bin/red"}, databases, [](const auto&) { return std::nullopt; }).empty());
}

} // namespace
} // namespace orbel::platform
