#include "Safety/SafetyPolicy.h"
#include "Support/ChildProcess.h"
#include "Support/Policies.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

#include <unistd.h>

namespace orbel {
namespace {

using enum AllowedRoot;

/// What Linux adds to the rules that hold everywhere.
class LinuxPolicyTest : public ::testing::Test {
protected:
    SafetyPolicy policy(const platform::Environment& environment = {}) const {
        return {home.path(), test::linuxOptions(environment)};
    }
    /// Makes the folder and asks for it.
    std::string refusalOf(std::string_view relative, AllowedRoot root = homeItem,
                          const platform::Environment& environment = {}) const {
        const auto folder = home.folder(relative);
        return policy(environment).check(folder, root, {}).refusal().value_or("allowed");
    }

    test::TemporaryFolder home;
};

TEST_F(LinuxPolicyTest, KeepsTheRulesOfEveryPlatform) {
    EXPECT_EQ(refusalOf("Library/Preferences/x"),
              "Inside Library: only Caches and Logs can be moved from here");
    EXPECT_EQ(refusalOf("Library/Safari/x"), "Protected: ~/Library/Safari");
    EXPECT_EQ(refusalOf("Library/Preferences/org.example", leftover), "allowed");
    EXPECT_EQ(refusalOf("Documents/x"), "allowed");
    EXPECT_EQ(policy().protectionReason("/Volumes/x", {}), "Protected: system location /Volumes");
    EXPECT_EQ(policy().protectionReason("/etc/passwd", {}), "Protected: system location /etc");
    EXPECT_EQ(refusalOf("Applications/X.app", applicationBundle), "Not an application bundle");
    auto options = test::linuxOptions();
    options.isWritable = [](const std::string&) { return false; };
    home.file("Applications/X.app/Contents/Info.plist");
    EXPECT_EQ(SafetyPolicy(home.path(), options)
                  .check(home.path("Applications/X.app"), applicationBundle, {})
                  .refusal(),
              "Needs admin: remove it in the file manager");
}

TEST_F(LinuxPolicyTest, ProgramsDataStaysSaveItsCaches) {
    for (const auto* kept :
         {".config/app", ".config/Cache", ".config/app/data/Cache", ".config/app/Service Worker",
          ".local/share/app", ".local/share/app/uv", ".local/bin", ".local/share/pnpm",
          ".var/app/org.example/data", ".var/app/org.example", "snap/app/7"}) {
        const std::string folder(kept);
        EXPECT_EQ(refusalOf(folder),
                  "Inside ~/" + folder.substr(0, folder.find('/')) + ": only caches can be moved from here");
    }
    for (const auto* cache :
         {".cache/app", ".var/app/org.example/cache/x", "snap/app/common/.cache/x",
          ".var/app/org.example/cache", "snap/app/7/.cache", ".config/app/Cache", ".config/app/Code Cache/js",
          ".config/app/GPUCache", ".config/app/CachedData", ".config/app/CachedExtensionVSIXs",
          ".config/app/Crashpad", ".config/app/Service Worker/CacheStorage", ".local/share/pnpm/store/v3",
          ".local/share/virtualenvs/x", ".local/share/uv"}) {
        EXPECT_EQ(refusalOf(cache), "allowed") << cache;
        EXPECT_EQ(policy().restoreDestinationReason(home.path(cache), homeItem), std::nullopt) << cache;
    }
    EXPECT_EQ(refusalOf(".config/google-chrome/Cache"), "Protected: ~/.config/google-chrome");
    EXPECT_EQ(refusalOf(".cache"), "Too close to the home folder");
    EXPECT_EQ(refusalOf(".var/app/org.mozilla.firefox/cache/x"), "Protected: ~/.var/app/org.mozilla.firefox");
}

TEST_F(LinuxPolicyTest, ProgramsDataStaysWhereALinkLeadsToIt) {
    home.folder("dotfiles/all/config/app");
    home.link(".config", home.path("dotfiles/all/config"));
    EXPECT_EQ(refusalOf("dotfiles/all/config/app"),
              "Inside ~/dotfiles/all/config: only caches can be moved from here");
    EXPECT_EQ(refusalOf("dotfiles/all/config/gh"), "Protected: ~/dotfiles/all/config/gh")
        << "made after the policy";
    EXPECT_EQ(policy().rootReason(home.path("dotfiles/all"), homeItem, true),
              "Contains protected data: ~/dotfiles/all/config");
    EXPECT_EQ(refusalOf("dotfiles/other"), "allowed");
}

TEST_F(LinuxPolicyTest, VariablesOnlyAddProtection) {
    const platform::Environment environment{{"XDG_CONFIG_HOME", home.path("my/settings")},
                                            {"XDG_DATA_HOME", home.path("my/data/")},
                                            {"XDG_STATE_HOME", "my/state"},
                                            {"XDG_CACHE_HOME", home.path("my/cache")}};
    const auto refusal = [&](std::string_view relative) {
        return refusalOf(relative, homeItem, environment);
    };
    EXPECT_EQ(refusal("my/settings/app"), "Inside ~/my/settings: only caches can be moved from here");
    EXPECT_EQ(refusal("my/settings/gh"), "Protected: ~/my/settings/gh");
    EXPECT_EQ(refusal("my/settings/app/Cache"), "allowed");
    EXPECT_EQ(refusal("my/data/uv"), "allowed");
    EXPECT_EQ(refusal(".config/gh"), "Protected: ~/.config/gh");
    EXPECT_EQ(refusal(".config/app"), "Inside ~/.config: only caches can be moved from here");
    EXPECT_EQ(refusal("my/data/Ostrevo Orbel"), "Protected: ~/my/data/Ostrevo Orbel");
    EXPECT_EQ(refusal("my/state/app"), "allowed") << "relative: ignored";
    EXPECT_EQ(refusal("my/cache/app"), "allowed");
    EXPECT_EQ(refusal("my/cache"), "Only what is inside ~/my/cache can be moved");
    const platform::Environment deep{{"XDG_CACHE_HOME", home.path("a/b/c")}};
    EXPECT_EQ(refusalOf("a/b/c/app", homeItem, deep), "allowed");
    EXPECT_EQ(refusalOf("a/b", homeItem, deep), "Contains the cache folder ~/a/b/c");

    for (const auto& senseless : {home.path(), std::string("/"), home.path(".config/x"), home.path(".local"),
                                  home.path(".ssh"), home.path("Library/Caches")})
        EXPECT_EQ(policy({{"XDG_CACHE_HOME", senseless}}).cacheFolders(), std::vector{home.path(".cache")})
            << senseless;
    EXPECT_EQ(refusalOf("Documents/x", homeItem, {{"XDG_DATA_HOME", home.path()}, {"XDG_CONFIG_HOME", "/"}}),
              "allowed");
}

TEST_F(LinuxPolicyTest, TheTrashWhatIsInItAndWhatHoldsItStay) {
    const platform::Environment moved{{"XDG_DATA_HOME", home.path("my/data")}};
    EXPECT_EQ(refusalOf(".local/share/Trash/files/x"), "Protected: ~/.local/share/Trash");
    EXPECT_EQ(refusalOf(".local/share/Trash/files/x", homeItem, moved), "Protected: ~/.local/share/Trash");
    EXPECT_EQ(refusalOf("my/data/Trash/files/x", homeItem, moved), "Protected: ~/my/data/Trash");
    EXPECT_EQ(refusalOf("my/data", homeItem, moved), "Contains protected data: ~/my/data/Trash");
    EXPECT_EQ(refusalOf(".local/share"), "Contains protected data: ~/.local/share/Trash");
    EXPECT_EQ(policy().trashFolders(), std::vector{home.path(".local/share/Trash/files")});
    EXPECT_EQ(policy(moved).trashFolders(), std::vector{home.path("my/data/Trash/files")});
}

TEST_F(LinuxPolicyTest, ThePictureFolderOfTheDesktopIsProtected) {
    home.file(".config/user-dirs.dirs", std::string_view("XDG_PICTURES_DIR=\"$HOME/Bilder/Alle\"\n"));
    EXPECT_EQ(refusalOf("Bilder/Alle/2024"), "Protected: your pictures (~/Bilder/Alle)");
    EXPECT_EQ(refusalOf("Bilder"), "Contains protected data: ~/Bilder/Alle");
    EXPECT_EQ(refusalOf("Bilder/Andere"), "allowed");
    home.file(".config/user-dirs.dirs", std::string_view("XDG_PICTURES_DIR=\"$HOME/\"\n"));
    EXPECT_EQ(refusalOf("Bilder/Alle/2024"), "allowed") << "no such folder is written as the home folder";
    home.file(".config/user-dirs.dirs", std::string_view("XDG_PICTURES_DIR=\"$HOME/Pictures\"\n"));
    EXPECT_EQ(refusalOf("Pictures/2024"), "Protected: ~/Pictures") << "its name says it";
    home.link("all", home.path());
    home.file(".config/user-dirs.dirs", std::string_view("XDG_PICTURES_DIR=\"$HOME/all\"\n"));
    EXPECT_EQ(refusalOf("Bilder/Alle/2024"), "allowed") << "a link to the home folder";
    std::filesystem::remove(home.path(".config/user-dirs.dirs"));
    ASSERT_EQ(::mkfifo(home.path(".config/user-dirs.dirs").c_str(), 0600), 0);
    EXPECT_EQ(refusalOf("Bilder/Alle/2024"), "allowed") << "must not wait for a writer";
}

TEST_F(LinuxPolicyTest, LeftoversMayBeTakenFromWhereProgramsLeaveThem) {
    for (const auto* left :
         {".config/app", ".config/autostart/org.example.desktop", ".cache/app", ".local/share/app",
          ".local/share/icons/hicolor/48x48/apps/org.example.png", ".local/state/app", ".var/app/org.example",
          ".local/share/applications/org.example.desktop"}) {
        EXPECT_EQ(refusalOf(left, leftover), "allowed") << left;
        EXPECT_EQ(policy().restoreDestinationReason(home.path(left), leftover), std::nullopt) << left;
    }
    for (const auto* shared :
         {".config/autostart", ".local/share/applications", ".local/share/icons", ".config/app/part",
          ".local/share/icons/hicolor/48x48", ".local/bin/app", ".local/share/icons/other/48x48/apps/x"})
        EXPECT_EQ(refusalOf(shared, leftover), "Not in a leftover folder") << shared;
    EXPECT_EQ(refusalOf(".config/gh", leftover), "Protected: ~/.config/gh");
}

TEST_F(LinuxPolicyTest, ProgramsAreRemovedFromWhereUsersPutThem) {
    constexpr std::string_view appImage("\x7F"
                                        "ELF\x02\x01\x01\0AI\x02",
                                        11);
    const auto refusal = [&](const std::string& path) {
        return policy().check(path, applicationBundle, {}).refusal().value_or("allowed");
    };
    for (const auto* place : {"Applications/X", ".local/opt/X", "opt/X"}) {
        EXPECT_EQ(refusalOf(place, applicationBundle), "allowed") << place;
        EXPECT_TRUE(policy().isApplication(home.path(place))) << place;
    }
    for (const auto* place : {".local/bin/x.AppImage", "bin/x", "AppImages/x", "Applications/y"}) {
        EXPECT_EQ(refusal(home.file(place, appImage)), "allowed") << place;
        EXPECT_EQ(policy().restoreDestinationReason(home.path(place), applicationBundle), std::nullopt)
            << place;
    }
    for (const auto* other :
         {"opt", ".local/opt", ".local/X", "opt/X/part", "opt/.hidden", "Documents/X", ".local/bin"}) {
        EXPECT_EQ(refusalOf(other, applicationBundle), "Not an application bundle") << other;
        EXPECT_FALSE(policy().isApplication(home.path(other))) << other;
    }
    EXPECT_EQ(refusal(home.file(".local/bin/script", std::string_view("#!/bin/sh, some text"))),
              "Not an application bundle");
    EXPECT_EQ(refusal(home.file("Documents/x.AppImage", appImage)), "Not an application bundle");
    for (const auto* other : {"Documents/x", ".local/x", "x"})
        EXPECT_EQ(policy().restoreDestinationReason(home.path(other), applicationBundle),
                  "Cannot restore there: not an Applications folder")
            << other;
    if (test::isRoot()) {
        ASSERT_EQ(::lchown(home.path("opt/X").c_str(), 65534, 65534), 0);
        EXPECT_EQ(refusal(home.path("opt/X")), "Belongs to another user");
    }
}

TEST_F(LinuxPolicyTest, OfAMakersFolderOnlyAProductsPartIsALeftoverAndOfTheHomeOnlyWhatIsHidden) {
    for (const auto* left : {".config/JetBrains/Idea", ".cache/google/x", ".tool", "snap/tool"})
        EXPECT_EQ(refusalOf(left, leftover), "allowed") << left;
    for (const auto* other :
         {".config/JetBrains", ".config/Other/x", "tool", "Documents", ".local", ".config", "snap"})
        EXPECT_EQ(refusalOf(other, leftover).starts_with("allowed"), false) << other;
    EXPECT_EQ(refusalOf(".ssh", leftover), "Protected: ~/.ssh");
}

TEST_F(LinuxPolicyTest, NamesThatAreNoTextStay) {
    const std::string_view name = "Documents/caf\xE9";
    EXPECT_EQ(refusalOf(name), "Its name is not valid text, so it could not be put back");
    EXPECT_EQ(refusalOf(std::string(name) + "/inside"),
              "Its name is not valid text, so it could not be put back");
    home.link("way\xFF", home.folder("Documents"));
    EXPECT_EQ(refusalOf("way\xFF/plain"), "Its name is not valid text, so it could not be put back");
    EXPECT_EQ(refusalOf("Documents/caf\xC3\xA9"), "allowed");
}

TEST_F(LinuxPolicyTest, AFolderThatHoldsAVolumeStays) {
    std::vector<platform::Mount> mounts(2);
    mounts[0].path = "/";
    mounts[1].path = home.path("work/a/disk");
    auto options = test::linuxOptions();
    options.mountTable = [&] { return std::make_shared<const std::vector<platform::Mount>>(mounts); };
    const SafetyPolicy policy(home.path(), options);
    const auto refusal = [&](std::string_view relative) {
        return policy.check(home.path(relative), homeItem, {}).refusal().value_or("allowed");
    };
    home.folder("work/a/disk2");
    home.file("work/b");
    EXPECT_EQ(refusal("work/a"), "Contains another volume: ~/work/a/disk");
    EXPECT_EQ(refusal("work/a/disk2"), "allowed");
    EXPECT_EQ(refusal("work/b"), "allowed");
    mounts.pop_back();
    EXPECT_EQ(refusal("work/a"), "allowed") << "the table is read anew";
    mounts.clear();
    EXPECT_EQ(refusal("work/a"), "Could not read which volumes are mounted");
}

TEST_F(LinuxPolicyTest, MountsMadeLaterAreSeen) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    home.folder("work/a/tmpfs");
    home.folder("work/b/bound");
    home.file("Documents/folder/file");
    home.folder(".ssh/keys");
    test::inChildProcess([&] {
        test::useOwnMountTable();
        const auto before = policy();
        const auto refusal = [&](std::string_view relative) {
            return before.check(home.path(relative), homeItem, {}).refusal().value_or("allowed");
        };
        ASSERT_EQ(refusal("work/a"), "allowed");
        test::mountTmpfs(home.path("work/a/tmpfs").c_str());
        EXPECT_EQ(refusal("work/a"), "Contains another volume: ~/work/a/tmpfs");
        EXPECT_EQ(refusal("work/a/tmpfs"), "On another volume");
        home.file("work/a/tmpfs/file");
        EXPECT_EQ(refusal("work/a/tmpfs/file"), "On another volume");

        test::bindMount(home.path("Documents").c_str(), home.path("work/b/bound").c_str());
        EXPECT_EQ(refusal("work/b"), "Contains another volume: ~/work/b/bound");
        EXPECT_EQ(refusal("work/b/bound"), "On another volume");
        EXPECT_EQ(refusal("work/b/bound/folder"), "On another volume")
            << "the same device, yet no move crosses";
        EXPECT_EQ(refusal("work/b/bound/folder/file"), "On another volume");
        EXPECT_EQ(refusal("Documents/folder"), "allowed");
        test::bindMount(home.path(".ssh").c_str(), home.path("work/b/bound/folder").c_str());
        EXPECT_EQ(refusal("work/b/bound/folder/keys"), "Protected: ~/.ssh");
    });
}

TEST_F(LinuxPolicyTest, AFileOfAnotherLayerIsOnTheSameVolume) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    for (const auto* folder : {"lower", "upper", "target"})
        home.folder(folder);
    test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(home.path("lower").c_str());
        test::mountTmpfs(home.path("upper").c_str());
        home.file("lower/Documents/old");
        home.folder("upper/changes");
        home.folder("upper/work");
        test::mountOverlay(home.path("lower"), home.path("upper/changes"), home.path("upper/work"),
                           home.path("target"));
        home.file("target/Documents/new");
        const SafetyPolicy overlaid(home.path("target"), test::linuxOptions());
        const auto device = [&](const char* name) {
            return FileIdentity::of(home.path(name)).value().device;
        };
        ASSERT_NE(device("target/Documents/old"), device("target/Documents")) << "what this test is about";
        for (const auto* file : {"target/Documents/old", "target/Documents/new"})
            EXPECT_EQ(overlaid.check(home.path(file), homeItem, {}).refusal(), std::nullopt) << file;
        home.file("upper/other");
        home.file("target/Documents/bound");
        test::bindMount(home.path("upper/other").c_str(), home.path("target/Documents/bound").c_str());
        EXPECT_EQ(overlaid.check(home.path("target/Documents/bound"), homeItem, {}).refusal(),
                  "On another volume");
    });
}

TEST_F(LinuxPolicyTest, AnUnusableHomeRefusesEverything) {
    const auto item = home.folder("Documents/x");
    const auto expectReason = [&](const std::string& homePath, const std::string& reason) {
        const SafetyPolicy policy(homePath, test::linuxOptions());
        EXPECT_EQ(policy.homeReason(), reason) << homePath;
        EXPECT_EQ(policy.check(item, homeItem, {}).refusal(), reason);
        EXPECT_EQ(policy.restoreDestinationReason(item, homeItem), reason);
    };
    const std::string gone = "The home folder cannot be found, so nothing is moved or put back";
    expectReason("/", "The home folder is the root folder, so nothing is moved or put back");
    expectReason("//.", "The home folder is the root folder, so nothing is moved or put back");
    expectReason("", gone);
    expectReason(home.path("missing"), gone);
    expectReason(home.file("file"), gone);
    expectReason(home.folder("\xFF"),
                 "The home folder’s path is not valid text, so nothing is moved or put back");
    EXPECT_EQ(policy().homeReason(), std::nullopt);
    EXPECT_EQ(SafetyPolicy("", test::macOSOptions()).homeReason(), gone) << "on every platform";
}

TEST_F(LinuxPolicyTest, AnotherUsersHomeRefusesEverything) {
    if (!test::isRoot())
        GTEST_SKIP() << "giving a folder to another user needs root";
    const auto other = home.folder("other");
    ASSERT_EQ(::chown(other.c_str(), 65534, 65534), 0);
    home.link("link", other);
    for (const auto* name : {"other", "link"})
        EXPECT_EQ(SafetyPolicy(home.path(name), test::linuxOptions()).homeReason(),
                  "The home folder belongs to another user, so nothing is moved or put back");
}

TEST_F(LinuxPolicyTest, AHomeReachedThroughALinkIsTheSameHome) {
    const auto real = home.folder("volumes/ann");
    const auto alias = home.link("ann", real);
    home.folder("volumes/ann/.config/gh");
    home.folder("volumes/ann/Documents/x");
    const SafetyPolicy policy(alias, test::linuxOptions({{"XDG_CONFIG_HOME", alias + "/.config"}}));
    EXPECT_EQ(policy.homePath(), real);
    for (const auto& form : {alias, real}) {
        EXPECT_TRUE(policy.check(form + "/Documents/x", homeItem, {}).isAllowed());
        EXPECT_EQ(policy.check(form + "/.config/gh", homeItem, {}).refusal(), "Protected: ~/.config/gh");
    }
    EXPECT_EQ(policy.check(real, homeItem, {}).refusal(), "Refusing to delete the root or home folder");
}

} // namespace
} // namespace orbel
