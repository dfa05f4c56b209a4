#include "Find/CommonWords.h"
#include "Find/LeftoverMatcher.h"
#include "Support/AppHome.h"
#include "Support/ChildProcess.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace orbel {
namespace {

using Words = std::vector<std::string>;

class LeftoverMatcherTest : public ::testing::Test {
protected:
    /// The relative paths of what matches, those that are certain marked with "!".
    Words leftoversOf(const InstalledApp& app, const std::vector<InstalledApp>& others = {}) const {
        Words found;
        for (const auto& leftover : home.matcher().leftovers(app, others)) {
            EXPECT_FALSE(leftover.evidence.empty());
            found.push_back((leftover.certainty == Leftover::Certainty::certain ? "!" : "")
                            + leftover.path.substr(home.path().size() + 1));
        }
        return found;
    }
    static InstalledApp app(Words identifiers, Words names = {}) {
        return {.path = "/usr/share/applications/" + identifiers.at(0) + ".desktop",
                .name = identifiers.at(0),
                .identifiers = identifiers,
                .names = std::move(names)};
    }
    void folders(const Words& relatives) const {
        for (const auto& relative : relatives)
            home.folder(relative);
    }

    test::AppHome home;
};

TEST_F(LeftoverMatcherTest, AWholeIdIsCertainAndANameLikely) {
    folders({".config/org.example.Tool", ".cache/org.example.Tool", ".local/share/org.example.Tool",
             ".local/state/tool", ".config/TOOL", ".tool", ".var/app/org.example.Tool",
             ".config/org.example.Tool.Helper", ".config/org.example", ".config/Tool2", ".config/mytool",
             ".config/tools", "tool", ".config/ORG.EXAMPLE.TOOL", ".local/share/deeper/org.example.Tool"});
    for (const auto* file :
         {".config/autostart/org.example.Tool.desktop", ".local/share/applications/org.example.Tool.desktop",
          ".local/share/icons/hicolor/48x48/apps/org.example.Tool.png",
          ".local/share/icons/org.example.Tool-symbolic.svg", ".tool2",
          ".local/share/icons/hicolor/48x48/apps/tool.png", ".local/share/applications/tool.desktop"})
        home.file(file);
    const auto tool = app({"org.example.Tool"}, {"Tool"});
    EXPECT_EQ(leftoversOf(tool),
              (Words{"!.cache/org.example.Tool", "!.config/autostart/org.example.Tool.desktop",
                     "!.config/org.example.Tool", "!.local/share/applications/org.example.Tool.desktop",
                     "!.local/share/icons/hicolor/48x48/apps/org.example.Tool.png",
                     "!.local/share/icons/org.example.Tool-symbolic.svg", "!.local/share/org.example.Tool",
                     ".config/TOOL", ".local/state/tool", ".tool"}));
    for (const auto& leftover : home.matcher().leftovers(tool, {})) {
        EXPECT_EQ(leftover.isCache, leftover.path.contains("/.cache/"));
        EXPECT_EQ(leftover.isLaunchAgent, leftover.path.contains("/autostart/"));
    }
}

TEST_F(LeftoverMatcherTest, WhatCouldBeSomebodyElsesIsNeverOffered) {
    folders({".config/org.example.Tool", ".config/tool", ".config/config", ".config/code", ".config/abc",
             ".cache/player"});
    const auto tool = app({"org.example.Tool"}, {"tool"});
    const auto hidden = [] {
        auto other = app({"other"});
        other.isHidden = true;
        return other;
    }();
    EXPECT_EQ(leftoversOf(tool, {hidden}), (Words{"!.config/org.example.Tool", ".config/tool"}));
    EXPECT_EQ(leftoversOf(tool, {app({"org.example.Tool"})}), Words{}) << "the same, installed twice";
    EXPECT_EQ(leftoversOf(tool, {app({"com.other.Tool"})}), Words{"!.config/org.example.Tool"});
    EXPECT_EQ(leftoversOf(tool, {app({"x"}, {"TOOL"})}), Words{"!.config/org.example.Tool"});
    home.otherPrograms["tool"] = "/usr/bin/tool";
    EXPECT_EQ(leftoversOf(tool), Words{"!.config/org.example.Tool"}) << "a program besides";
    auto own = tool;
    own.executables = {"/usr/bin/tool"};
    EXPECT_EQ(leftoversOf(own), (Words{"!.config/org.example.Tool", ".config/tool"}));

    EXPECT_EQ(leftoversOf(app({"config"}, {"code", "Player", "abc", "", ".", "..", "/", "a/b"})), Words{})
        << "common, too short, or no name";
    for (const auto* word : {"code", "Player", "GTK-3.0", "systemd", "python3", "applications"})
        EXPECT_TRUE(isCommonWord(word)) << word;
}

TEST_F(LeftoverMatcherTest, LinksAndWhatProgramsLieInStay) {
    home.folder("elsewhere/data");
    home.link(".config/org.example.Tool", home.path("elsewhere/data"));
    home.link(".cache/org.example.Tool", "/");
    folders({".local/share/org.example.Tool/bin", ".tool/bin"});
    const auto tool = app({"org.example.Tool"}, {"tool"});
    EXPECT_EQ(leftoversOf(tool), (Words{"!.local/share/org.example.Tool", ".tool"}));
    auto own = tool;
    own.executables = {home.path(".local/share/org.example.Tool/bin/tool")};
    auto other = app({"another"});
    other.executables = {home.path(".tool/bin/other")};
    EXPECT_EQ(leftoversOf(own, {other}), Words{});

    home.folder("dotfiles/state/org.example.Tool");
    home.link(".local/state", home.path("dotfiles/state"));
    EXPECT_EQ(leftoversOf(tool).size(), 2) << "a folder of leftovers that a link leads to";
    if (test::isRoot()) {
        ASSERT_EQ(::lchown(home.path(".tool").c_str(), 65534, 65534), 0);
        EXPECT_EQ(leftoversOf(tool), Words{"!.local/share/org.example.Tool"}) << "another user's";
    }
}

TEST_F(LeftoverMatcherTest, AMakersFolderIsSharedByItsProducts) {
    folders({".config/JetBrains/Idea", ".config/JetBrains/CLion", ".cache/JetBrains/Idea",
             ".config/Unknown/Idea"});
    const auto idea = app({"jetbrains-idea"}, {"Idea", "JetBrains"});
    EXPECT_EQ(leftoversOf(idea), (Words{".cache/JetBrains/Idea", ".config/JetBrains/Idea"}))
        << "never the maker's own folder";
    const auto product = app({"jetbrains-idea"}, {"Idea"});
    EXPECT_EQ(leftoversOf(product, {app({"gimp"})}).size(), 2);
    for (const auto& other :
         {app({"jetbrains-clion"}), app({"com.jetbrains.CLion"}), app({"x"}, {"JetBrains Toolbox"})})
        EXPECT_EQ(leftoversOf(product, {other}), Words{}) << other.name;
}

TEST_F(LeftoverMatcherTest, ASandboxBelongsToItsApplicationAlone) {
    folders({".var/app/org.example.Flat", "snap/tool", "snap/other", ".config/flat"});
    auto flat = app({"org.example.Flat"});
    flat.dataFolders = {home.path(".var/app/org.example.Flat")};
    auto snap = app({"tool_tool"});
    snap.dataFolders = {home.path("snap/tool")};
    EXPECT_EQ(leftoversOf(flat, {snap}), Words{"!.var/app/org.example.Flat"});
    EXPECT_EQ(leftoversOf(snap, {flat}), Words{"!snap/tool"});
    auto again = flat;
    again.path += ".system";
    EXPECT_EQ(leftoversOf(flat, {again}), Words{}) << "installed for the user and for all";
    EXPECT_EQ(leftoversOf(app({"org.example.Flat"})), Words{}) << "no sandbox of it";
}

TEST_F(LeftoverMatcherTest, AStartAtLoginOfAShortNameMustStartItsProgram) {
    const auto program = home.program("Applications/tool");
    home.file(".config/autostart/tool.desktop", "[Desktop Entry]\nType=Application\nExec=" + program + "\n");
    home.file(".config/autostart/other.desktop",
              std::string_view("[Desktop Entry]\nType=Application\nExec=/bin/sh\n"));
    auto tool = app({"tool", "other"});
    EXPECT_EQ(leftoversOf(tool), Words{});
    tool.executables = {program};
    EXPECT_EQ(leftoversOf(tool), Words{"!.config/autostart/tool.desktop"});
}

TEST_F(LeftoverMatcherTest, BundlesLeaveThingsInTheLibrary) {
    constexpr auto machine = ".01234567-89AB-CDEF-0123-456789ABCDEF.plist";
    for (const std::string left :
         {"Caches/org.example.Tool/x", "Preferences/org.example.Tool.plist", "Application Support/Tool/x",
          "Saved Application State/org.example.Tool.savedState/x", "Group Containers/G.org.example/x",
          "Caches/org.example.Tool.helper/x", "Preferences/org.example.Toolbox.plist", "Containers/Tool/x",
          "Preferences/tool.plist"})
        home.file("Library/" + left);
    home.file("Library/Preferences/ByHost/org.example.Tool" + std::string(machine));
    home.file("systemLibrary/LaunchDaemons/org.example.Tool.plist");
    home.file("systemLibrary/Application Support/Tool/x");
    auto tool = app({"org.example.Tool"}, {"Tool"});
    tool.appGroups = {"G.org.example"};
    EXPECT_EQ(leftoversOf(tool),
              (Words{"!Library/Caches/org.example.Tool", "!Library/Group Containers/G.org.example",
                     "!Library/Preferences/ByHost/org.example.Tool" + std::string(machine),
                     "!Library/Preferences/org.example.Tool.plist",
                     "!Library/Saved Application State/org.example.Tool.savedState",
                     "Library/Application Support/Tool"}));
    const auto forAll = home.matcher().systemLeftovers(tool, {});
    ASSERT_EQ(forAll.size(), 1);
    EXPECT_TRUE(forAll[0].needsAdmin && forAll[0].isLaunchAgent);
}

} // namespace
} // namespace orbel
