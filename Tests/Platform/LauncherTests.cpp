#include "Platform/Linux/Portable/AppImage.h"
#include "Platform/Linux/Portable/DesktopEntry.h"
#include "Platform/Linux/Portable/ExecResolver.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace orbel::platform {
namespace {

using Words = std::vector<std::string>;
using enum LauncherTarget::State;

TEST(DesktopEntry, ReadsGroupsKeysAndEscapes) {
    const auto entry =
        DesktopEntry::parse("\xEF\xBB\xBF# comment\nLost=before any group\n"
                            "[Desktop Entry]\r\n Name = First \nName=A\\sB\\n\\\\c\\d\\\n"
                            "=no key\nno equals\nName[de]=Ein\nNoDisplay=true\nHidden=True\n"
                            "[Desktop Action x]\nName=Other\n[broken\nName=Lost\n[]\nName=Lost\n"
                            "[Desktop Entry]\nIcon=again");
    EXPECT_EQ(entry.text("Name"), "A B\n\\c\\d\\") << "the last one counts";
    EXPECT_EQ(entry.text("Name[de]"), "Ein");
    EXPECT_EQ(entry.text("Name", "Desktop Action x"), "Other");
    EXPECT_EQ(entry.text("Icon"), "again");
    EXPECT_EQ(entry.text("Lost"), std::nullopt);
    EXPECT_EQ(entry.text("Name", "none"), std::nullopt);
    EXPECT_TRUE(entry.isTrue("NoDisplay"));
    EXPECT_FALSE(entry.isTrue("Hidden"));
    EXPECT_EQ(entry.groups(), (Words{"Desktop Entry", "Desktop Action x"}));
    EXPECT_EQ(DesktopEntry::parse(std::string("[Desktop Entry]\nExec=a\0b", 24)).text("Exec"), std::nullopt);
    for (const auto* nothing : {"", "\n", "[", "]", "[]", "=", "\\", "[Desktop Entry", "\xFF\xFE"})
        EXPECT_TRUE(DesktopEntry::parse(nothing).groups().empty()) << nothing;
}

TEST(DesktopEntry, ReadsOnlySmallRegularFilesAndNeverWaits) {
    const test::TemporaryFolder folder;
    const std::string head = "[Desktop Entry]\nName=x\n";
    EXPECT_TRUE(DesktopEntry::read(folder.file("good", head)));
    EXPECT_TRUE(DesktopEntry::read(folder.link("link", folder.path("good"))));
    EXPECT_FALSE(DesktopEntry::read(folder.file("groupless", "[Other]\nName=x\n")));
    EXPECT_FALSE(DesktopEntry::read(folder.file("large", head + std::string(1024 * 1024, '#'))));
    EXPECT_FALSE(DesktopEntry::read(folder.folder("folder")));
    EXPECT_FALSE(DesktopEntry::read(folder.link("loop", folder.path("loop"))));
    EXPECT_FALSE(DesktopEntry::read(folder.path("missing")));
    EXPECT_FALSE(DesktopEntry::read("/dev/zero"));
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(DesktopEntry::read(folder.path("pipe")));
    EXPECT_FALSE(isAppImage(folder.path("pipe")));
}

TEST(AppImageName, IsWithoutVersionAndMachine) {
    const std::vector<std::tuple<std::string, std::string, std::string>> table{
        {"Tool.AppImage", "Tool", ""},
        {"Tool-3.1-x86_64.AppImage", "Tool", "3.1"},
        {"Big-Tool_0.21.2-Linux-x86_64.appimage", "Big-Tool", "0.21.2"},
        {"tool-v1.2.3-RC1-linux64.AppImage", "tool", "1.2.3"},
        {"Tool-23.08.4.aarch64.AppImage", "Tool", "23.08.4.aarch64"},
        {"Tool-latest-amd64 (2).AppImage", "Tool", ""},
        {"Tool x64.AppImage", "Tool", ""},
        {"7zip-x86-64.AppImage", "7zip", ""},
        {"3.1-x86_64.AppImage", "3.1", ""},
        {"Tool-3.1", "Tool-3.1", ""},
    };
    for (const auto& [file, name, version] : table) {
        const auto found = appImageName(file);
        EXPECT_EQ(found.name, name) << file;
        EXPECT_EQ(found.version.value_or(""), version) << file;
    }
}

TEST(ExecLine, TakesQuotesAndFieldCodesApart) {
    const std::vector<std::pair<std::string, std::optional<Words>>> table{
        {"app %U", Words{"app"}},
        {"  app\t--x=%f y%%z ", Words{"app", "--x=", "y%z"}},
        {R"("/opt/a b/app" "q\"\\\$\`\x" '')", Words{"/opt/a b/app", "q\"\\$`\\x", ""}},
        {"'/a b/app' it\\ s", Words{"/a b/app", "it s"}},
        {R"(app "%u" '%c')", Words{"app", "", ""}},
        {"", std::nullopt},
        {" ", std::nullopt},
        {"%U", std::nullopt},
        {"\"unclosed", std::nullopt},
        {"app \"", std::nullopt},
        {"app 'x", std::nullopt},
        {"app %", std::nullopt},
        {"app %z", std::nullopt},
        {"app \"%\"", std::nullopt},
        {"app \\", Words{"app", "\\"}},
    };
    for (const auto& [exec, words] : table)
        EXPECT_EQ(execWords(exec), words) << exec;
}

TEST(ExecLine, TellsWhatIsStarted) {
    using enum ExecCommand::Kind;
    const std::vector<std::pair<std::string, std::optional<ExecCommand>>> table{
        {"app -x %f", ExecCommand{program, "app", {"-x"}}},
        {"env A=1 B= /opt/app --y", ExecCommand{program, "/opt/app", {"--y"}}},
        {"/usr/bin/env -u A app", ExecCommand{program, "app", {}}},
        {"/usr/bin/flatpak run --branch=stable --command=x org.example.App @@u %U @@",
         ExecCommand{flatpak, "org.example.App", {"@@u", "@@"}}},
        {"env A=1 flatpak run org.example.App//beta", ExecCommand{flatpak, "org.example.App", {}}},
        {"snap run tool.sub", ExecCommand{snap, "tool", {}}},
        {"flatpak list", ExecCommand{program, "flatpak", {"list"}}},
        {"flatpak run", std::nullopt},
        {"snap run .x", std::nullopt},
        {"flatpak run --branch stable org.example.App", std::nullopt},
        {"env PATH=/x app", std::nullopt},
        {"env -S app", std::nullopt},
        {"env -u", std::nullopt},
        {"env", std::nullopt},
        {"\"\"", std::nullopt},
    };
    for (const auto& [exec, command] : table)
        EXPECT_EQ(execCommand(exec), command) << exec;
}

TEST(ExecResolver, SaysMissingOnlyWhenThatIsCertain) {
    const test::TemporaryFolder folder;
    const auto program = folder.file("bin/app");
    ::chmod(program.c_str(), 0755);
    folder.file("bin/plain");
    folder.folder("bin/folder");
    folder.link("bin/gone", "nowhere");
    folder.link("bin/loop", folder.path("bin/loop"));
    folder.link("bin/usb", "/media/orbel-test/app");
    folder.link("bin/disk", "/media/orbel-test");
    folder.link("bin/deep", "disk/x");
    folder.folder("flatpak/app/org.example.App");
    folder.folder("snaps/tool");
    const ExecResolver resolver{.searchPath = {folder.path("none"), folder.path("bin")},
                                .flatpakInstallations = {folder.path("flatpak")},
                                .snapFolders = {folder.path("snaps")},
                                .outOfReach = {folder.path("remote")}};
    const std::vector<std::pair<std::string, LauncherTarget::State>> table{
        {program, found},
        {"app %U", found},
        {"gone", missing},
        {"nothing", missing},
        {folder.path("bin/nothing"), missing},
        {folder.path("bin/app/below"), missing},
        {folder.path("bin/gone"), missing},
        {"env X=1 nothing", missing},
        {"plain", unknown},
        {folder.path("bin/folder"), unknown},
        {"loop", unknown},
        {"usb", unknown},
        {folder.path("bin/disk/app"), unknown},
        {folder.path("bin/deep/y"), unknown},
        {"/media/orbel-test/app", unknown},
        {"/opt/../media/orbel-test/app", unknown},
        {folder.path("remote/app"), unknown},
        {"bin/app", unknown},
        {folder.path("bin/" + std::string(5000, 'x')), unknown},
        {"\"unclosed", unknown},
        {"flatpak run org.example.App", found},
        {"flatpak run org.example.Gone", missing},
        {"snap run tool", found},
        {"snap run other", missing},
    };
    for (const auto& [exec, state] : table)
        EXPECT_EQ(resolver.resolve(exec).state, state) << exec;
    EXPECT_EQ(resolver.resolve("app").program, program);

    auto further = resolver;
    further.namedInstallations = {folder.path("disk that is not there")};
    further.flatpakInstallations.push_back(further.namedInstallations[0]);
    EXPECT_EQ(further.resolve("flatpak run org.example.Gone").state, unknown);
    EXPECT_EQ(further.resolve("flatpak run org.example.App").state, found);

    const auto entry = [&](const std::string& lines) {
        return resolver.resolve(DesktopEntry::parse("[Desktop Entry]\n" + lines));
    };
    EXPECT_EQ(entry("Type=Application\nExec=nothing")->state, missing);
    EXPECT_EQ(entry("Type=Application\nExec=nothing\nTryExec=nothing")->state, unknown)
        << "hidden on purpose";
    for (const auto* none :
         {"Type=Link\nExec=nothing", "Type=Application", "Type=Application\nExec=x\nHidden=true"})
        EXPECT_EQ(entry(none), std::nullopt) << none;
}

} // namespace
} // namespace orbel::platform
