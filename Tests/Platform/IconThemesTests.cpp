#include "Platform/Linux/Portable/IconThemes.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orbel::platform {
namespace {

TEST(IconThemes, GiveTheNearestIconOfTheFirstThemeThatHasIt) {
    const test::TemporaryFolder disk;
    disk.file("system/hicolor/index.theme",
              std::string_view(
                  "[Icon Theme]\nDirectories=48x48/apps,256x256/apps,scalable/apps,64x64/mimetypes,../up\n"
                  "[48x48/apps]\nSize=48\nType=Fixed\n[256x256/apps]\nSize=256\nType=Threshold\n"
                  "[scalable/apps]\nSize=128\nMinSize=100\nMaxSize=200\nType=Scalable\n"
                  "[64x64/mimetypes]\nSize=64\nContext=MimeTypes\n[../up]\nSize=64\n"));
    disk.file("system/Night/index.theme",
              std::string_view("[Icon Theme]\nInherits=Day,hicolor\nDirectories=a\n[a]\nSize=64\n"));
    disk.file("mine/Day/index.theme", // stands on the one that stands on it
              std::string_view("[Icon Theme]\nInherits=Night\nDirectories=a,b\n[a]\nSize=64\n[b]\nSize=x\n"));
    const auto small = disk.file("system/hicolor/48x48/apps/editor.png");
    const auto large = disk.file("system/hicolor/256x256/apps/editor.png");
    const auto lines = disk.file("mine/hicolor/scalable/apps/editor.svg");
    const auto night = disk.file("system/Night/a/player.png");
    const auto day = disk.file("mine/Day/a/player.png");
    disk.file("system/hicolor/64x64/mimetypes/text.png");
    disk.file("system/up/secret.png");
    const auto loose = disk.file("pixmaps/old.xpm");
    const std::vector<std::string> folders{disk.path("mine"), disk.path("system"), disk.path("pixmaps")};

    const IconThemes themes(folders, "Night");
    EXPECT_EQ(themes.file("editor", 48), small);
    EXPECT_EQ(themes.file("editor.png", 112), lines);
    EXPECT_EQ(themes.file("editor", 512), large);
    EXPECT_EQ(themes.file("player", 64), night);
    EXPECT_EQ(IconThemes(folders, "Day").file("player", 64), day);
    EXPECT_EQ(themes.file("old", 48), loose);
    EXPECT_EQ(themes.file(day, 48), day);
    for (const std::string_view none :
         {"text", "secret", "../up/secret", "", ".", "/nowhere.png", "Night/a/player"})
        EXPECT_EQ(themes.file(none, 48), "") << none;
    EXPECT_EQ(IconThemes(folders, "../system/Night").file("player", 64), "");
}

} // namespace
} // namespace orbel::platform
