#include "Platform/Linux/Portable/LinuxConventions.h"
#include "Platform/Linux/Portable/LinuxPlaces.h"
#include "Platform/Linux/Portable/UserDirs.h"
#include "Platform/macOS/Portable/MacOSConventions.h"
#include "Platform/macOS/Portable/MacOSPlaces.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace orbel::platform {
namespace {

TEST(Conventions, WorkersFollowTheProcessors) {
    EXPECT_EQ(linuxConventions(1).defaultWalkerWorkers, 16);
    EXPECT_EQ(linuxConventions(64).defaultWalkerWorkers, 64);
    EXPECT_EQ(macOSConventions(2).defaultWalkerWorkers, 2);
    EXPECT_EQ(macOSConventions(10).defaultWalkerWorkers, 8);
}

TEST(Places, ASystemRootThatHoldsTheHomeIsLeftOut) {
    const auto protects = [](const std::string& home, std::string_view root) {
        const auto roots = linuxPlaces(home, {}).systemRoots;
        return std::ranges::find(roots, root) != roots.end();
    };
    for (const auto* root : {"/root", "/srv", "/mnt", "/media", "/run", "/var/lib", "/var/db"}) {
        EXPECT_TRUE(protects("/home/ann", root)) << root;
        EXPECT_FALSE(protects(std::string(root) + "/x/ann", root)) << root;
        EXPECT_TRUE(protects(std::string(root) + "x/ann", root)) << root;
    }
    EXPECT_FALSE(protects("/root", "/root"));
    EXPECT_TRUE(protects("/root", "/srv"));
    EXPECT_TRUE(protects("/etc/ann", "/etc")) << "never a place for homes";
}

TEST(Places, TheApplicationsDataAndTheTrashFollowTheDataFolder) {
    EXPECT_EQ(linuxPlaces("/home/ann", {}).applicationSupport, "/home/ann/.local/share");
    EXPECT_EQ(linuxPlaces("/home/ann", {{"XDG_DATA_HOME", "relative"}}).applicationSupport,
              "/home/ann/.local/share");
    EXPECT_EQ(linuxPlaces("/home/ann", {{"XDG_DATA_HOME", "/data/"}}).applicationSupport, "/data");
    EXPECT_EQ(linuxPlaces("/home/ann", {{"XDG_DATA_HOME", "/data/"}}).trashFolders,
              std::vector<std::string>{"/data/Trash/files"});
    EXPECT_EQ(macOSPlaces("/Users/ann").applicationSupport, "/Users/ann/Library/Application Support");
    EXPECT_EQ(macOSPlaces("/Users/ann").trashFolders, std::vector<std::string>{"/Users/ann/.Trash"});
}

TEST(UserDirs, FindsThePictureFolderInWhatPeopleWrite) {
    const auto pictures = [](std::string_view text) {
        const auto folders = userFoldersIn(text, "/home/ann");
        const auto found = folders.find("PICTURES");
        return found == folders.end() ? std::string("none") : found->second;
    };
    EXPECT_EQ(
        pictures(
            "# comment\nXDG_MUSIC_DIR=\"$HOME/Music\"\nXDG_PICTURES_DIR=\"$HOME/My \\\"Pictures\\\"/\"\n"),
        "/home/ann/My \"Pictures\"");
    EXPECT_EQ(pictures(" XDG_PICTURES_DIR = \"/data/x/../photos\"\r\n"), "/data/photos");
    EXPECT_EQ(pictures("XDG_PICTURES_DIR=${HOME}/Pictures # bare"), "/home/ann/Pictures");
    EXPECT_EQ(pictures("XDG_PICTURES_DIR=\"/a\"\nXDG_PICTURES_DIR=\"/b\""), "/b");
    EXPECT_EQ(pictures("XDG_PICTURES_DIR=\"$HOME/open"), "/home/ann/open");
    for (const auto* none :
         {"", "XDG_PICTURES_DIR", "XDG_PICTURES_DIR=", "XDG_PICTURES_DIR=\"$HOME\"",
          "XDG_PICTURES_DIR=\"$HOME/\"", "XDG_PICTURES_DIR=\"Pictures\"", "#XDG_PICTURES_DIR=\"/a\"",
          "XDG_PICTURES_DIRS=\"/a\"", "XDG_PICTURES_DIR=\"$HOMER/a\"", "XDG_PICTURES_DIR=\"\\"})
        EXPECT_EQ(pictures(none), "none") << none;
}

} // namespace
} // namespace orbel::platform
