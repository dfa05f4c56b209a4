#include "Delete/LiveTrash.h"
#include "Find/BrokenShortcutFinder.h"
#include "Find/LinkProber.h"
#include "Journal/LiveRestore.h"
#include "Journal/PutBack.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"
#include "Support/ChildProcess.h"
#include "Support/Faults.h"
#include "Support/MoverHome.h"
#include "Support/Policies.h"
#include "Support/TemporaryFolder.h"
#include "Util/ReadFile.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;
using State = BrokenShortcutFinder::State;
using Row = BrokenShortcutFinder::Row;

class BrokenShortcutTest : public ::testing::Test {
protected:
    std::map<std::string, Row> found() const {
        const ScanCancellation nobodyCancels;
        const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
        std::map<std::string, Row> rows;
        for (auto& row : BrokenShortcutFinder().run(tree, policy, currentDate()))
            rows.emplace(row.item.path.substr(home.path().size() + 1), std::move(row));
        return rows;
    }

    TemporaryFolder home;
    SafetyPolicy policy{home.path(), test::linuxOptions()};
};

TEST_F(BrokenShortcutTest, ListsLinksWhoseTargetIsGone) {
    home.file("docs/file");
    const std::map<std::string, std::string> missing{{"docs/gone", "nowhere"},
                                                     {"docs/through", "gone"},
                                                     {"docs/inFile", "file/x"},
                                                     {"docs/above", "../../nowhere/x"},
                                                     {"docs/.hidden/gone", home.path("nowhere\xFF")},
                                                     {"docs/lock", "nowhere"}};
    const std::map<std::string, std::string> intentional{
        {".config/chrome/SingletonLock", "host-4711"},    {".mozilla/x/lock", "127.0.1.1:+4711"},
        {"docs/.#file", "ann@host.4711:1700000000"},      {".wine/dosdevices/com1", "/dev/ttyS99"},
        {"docs/node_modules/.bin/tsx", "../tsx/cli.mjs"}, {".cache/bus", "@abstract socket"},
        {"docs/photo.jpg", "../.git/annex/objects/x"}};
    home.link("docs/fine", "file");
    home.link("docs/fineFolder", "../docs/../docs/.");
    home.link("docs/repo/.git/gone", "nowhere");
    home.link("docs/Tool.app/gone", "nowhere");
    for (const auto& [path, text] : missing)
        home.link(path, text);
    for (const auto& [path, text] : intentional)
        home.link(path, text);
    const auto rows = found();
    EXPECT_EQ(rows.size(), missing.size() + intentional.size());
    for (const auto& [path, text] : missing) {
        ASSERT_TRUE(rows.contains(path)) << path;
        const auto& row = rows.at(path);
        EXPECT_EQ(row.state, State::missing) << path;
        EXPECT_EQ(row.target, text);
        EXPECT_EQ(row.item.detail, row.item.path + " → " + text);
        EXPECT_EQ(row.item.blockedReason, "Is a symbolic link; links are never followed for deletion");
        EXPECT_FALSE(row.item.preselected);
    }
    for (const auto& [path, text] : intentional) {
        ASSERT_TRUE(rows.contains(path)) << path;
        EXPECT_EQ(rows.at(path).state, State::intentional) << path;
        EXPECT_EQ(rows.at(path).item.blockedReason, "Made by a program on purpose");
    }
}

TEST_F(BrokenShortcutTest, WhatCannotBeToldIsUnknown) {
    home.link("docs/circle", "circle");
    home.link("docs/one", "two/x");
    home.link("docs/two", "one/y");
    home.link("docs/stick", "/media/nobody/stick/file");
    home.link("docs/long", std::string(300, 'x'));
    const auto rows = found();
    EXPECT_EQ(rows.size(), 5);
    for (const auto& [path, row] : rows) {
        EXPECT_EQ(row.state, State::unknown) << path;
        EXPECT_FALSE(row.item.isSelectable());
    }
    EXPECT_EQ(rows.at("docs/circle").item.blockedReason,
              "Not known whether its target is there: leads in a circle");
    EXPECT_EQ(rows.at("docs/stick").item.blockedReason,
              "Not known whether its target is there: on a volume that is not mounted");
}

TEST_F(BrokenShortcutTest, AsksNothingOfNetworksAndTellsAbsentVolumesFromGoneFiles) {
    home.file("server/file");
    home.file("volumes/here/file");
    home.folder("volumes/away");
    std::vector<platform::Mount> mounts(3);
    mounts[0].path = "/";
    mounts[1].path = home.path("server");
    mounts[1].isNetwork = true;
    mounts[2].path = home.path("volumes/here");
    LinkProber prober(mounts, {.volumes = {home.path("volumes")}, .runtime = {home.path("run")}});
    const auto stateOf = [&](const std::string& target) {
        home.folder("links");
        fs::remove(home.path("links/link"));
        return prober.probe(home.link("links/link", target)).state;
    };
    EXPECT_EQ(stateOf("../server/file"), TargetState::unknown) << "not even where it is there";
    EXPECT_EQ(stateOf("../server/gone"), TargetState::unknown);
    EXPECT_EQ(stateOf("../volumes/here/file"), TargetState::present);
    EXPECT_EQ(stateOf("../volumes/here/gone"), TargetState::missing);
    EXPECT_EQ(stateOf(home.path("volumes/away/gone")), TargetState::unknown);
    EXPECT_EQ(stateOf(home.path("volumes/third/file")), TargetState::unknown);
    EXPECT_EQ(stateOf("../run/socket"), TargetState::unknown);
    EXPECT_EQ(prober.probe(home.link("run/link", "gone")).state, TargetState::missing);
    EXPECT_EQ(prober.probe(home.path("links/vanished")).state, TargetState::missing);
}

TEST_F(BrokenShortcutTest, ARefusalIsNoAbsence) {
    if (!test::isRoot())
        GTEST_SKIP() << "becoming another user needs root";
    home.file("closed/file");
    const auto link = home.link("docs/link", home.path("closed/gone"));
    const test::Restricted closed(home.path("closed"), 0);
    fs::permissions(home.path(), fs::perms::others_exec, fs::perm_options::add);
    test::inChildProcess([&] {
        test::becomeOtherUser();
        EXPECT_EQ(LinkProber().probe(link).state, TargetState::unknown);
    });
}

TEST_F(BrokenShortcutTest, ListsLaunchersWhoseProgramIsGone) {
    const auto entry = [&](const std::string& path, const std::string& exec, const std::string& more = "") {
        home.file(path, "[Desktop Entry]\nType=Application\nName=x\nExec=" + exec + "\n" + more);
    };
    const auto program = home.file("tools/tool");
    fs::permissions(program, fs::perms::owner_exec, fs::perm_options::add);
    const std::map<std::string, BrokenShortcutFinder::Kind> broken{
        {".local/share/applications/gone.desktop", BrokenShortcutFinder::Kind::launcher},
        {".local/share/applications/wine/Programs/deep.desktop", BrokenShortcutFinder::Kind::launcher},
        {".config/autostart/gone.desktop", BrokenShortcutFinder::Kind::autostart},
        {"Desktop/gone.desktop", BrokenShortcutFinder::Kind::launcher}};
    for (const auto& [path, kind] : broken)
        entry(path, "env A=b \"" + home.path("tools/no such tool") + "\" %U");
    entry(".local/share/applications/fine.desktop", program + " --x %f");
    entry(".local/share/applications/hidden.desktop", "/nowhere/x", "Hidden=true\n");
    entry(".local/share/applications/try.desktop", "/nowhere/x", "TryExec=/nowhere/x\n");
    entry(".local/share/applications/doubt.desktop", "\"/nowhere/x");
    entry("src/template.desktop", "/nowhere/x");
    home.file(".local/share/applications/noise.desktop", "\xFF[Desktop Entry\nExec=/nowhere\0x");
    home.file(".local/share/applications/empty.desktop", "");
    const auto rows = found();
    EXPECT_EQ(rows.size(), broken.size());
    for (const auto& [path, kind] : broken) {
        ASSERT_TRUE(rows.contains(path)) << path;
        EXPECT_EQ(rows.at(path).kind, kind);
        EXPECT_EQ(rows.at(path).state, State::missing);
        EXPECT_EQ(rows.at(path).target, home.path("tools/no such tool"));
        EXPECT_FALSE(rows.at(path).item.preselected) << "it was written just now";
        EXPECT_EQ(rows.at(path).item.isSelectable(), path.find("deep") == std::string::npos) << path;
    }
}

TEST_F(BrokenShortcutTest, ListsBookmarksWhoseTargetIsGoneAndNeverOffersThem) {
    home.folder("Films");
    const auto list =
        home.file(".config/gtk-3.0/bookmarks",
                  "file://" + home.path("Films") + " Films\r\nfile://" + home.path("Old%20Films")
                      + " Old\r\nsftp://host/gone\nnonsense\nfile://host/gone\nfile:///a%00b\n"
                      + "file:///%2\nfile:///media/nobody/disk\nfile://" + home.path("Old%20Films"));
    home.file(".local/share/user-places.xbel",
              "<?xml version='1.0'?><!-- <bookmark href='file:///no'/> --><xbel><bookmark href=\"file://"
                  + home.path("a&amp;b") + "\"><title>x</title></bookmark><bookmark href='file://"
                  + home.path("Films") + "'/><bookmark href='file:///&nothing;'/><bookmark href='trash:/'/>"
                  + "<bookmark href='file:///late' broken");
    const ScanCancellation nobodyCancels;
    const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
    const auto rows = BrokenShortcutFinder().run(tree, policy, currentDate());
    ASSERT_EQ(rows.size(), 3U);
    for (const auto& row : rows) {
        EXPECT_EQ(row.kind, BrokenShortcutFinder::Kind::bookmark);
        EXPECT_FALSE(row.item.isSelectable());
        EXPECT_EQ(tree.path(row.index, PathCanonicalizer::shared()), row.item.path);
    }
    EXPECT_EQ(rows[0].target, "/media/nobody/disk");
    EXPECT_EQ(rows[0].state, State::unknown) << "its volume is not there";
    EXPECT_EQ(rows[1].target, home.path("Old Films"));
    EXPECT_EQ(rows[1].item.path, list);
    EXPECT_EQ(rows[1].item.blockedReason, "Is a bookmark in the file manager; edit it there");
    EXPECT_EQ(rows[2].target, home.path("a&b"));

    home.file(".config/gtk-3.0/bookmarks", "file:///gone\n" + std::string(1 << 20, 'x'));
    home.file(".local/share/user-places.xbel", std::string_view("<<<"));
    EXPECT_TRUE(found().empty()) << "no list is that long, and the other is none";
}

TEST(BrokenShortcuts, ALauncherMovesToTheTrashAndComesBack) {
    const test::MoverHome home;
    const std::string text = "[Desktop Entry]\nType=Application\nName=x\nExec=/nowhere/x\n";
    const std::array paths{home.file(".config/autostart/gone.desktop", text),
                           home.file(".local/share/applications/gone.desktop", text)};
    for (const auto& path : paths)
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(48));
    const ScanCancellation nobodyCancels;
    const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
    std::vector<DeletionItem> items;
    for (const auto& row : BrokenShortcutFinder().run(tree, home.policy, currentDate()))
        items.push_back(row.item);
    ASSERT_EQ(items.size(), 2);
    for (const auto& item : items) {
        EXPECT_EQ(item.root, AllowedRoot::leftover);
        EXPECT_TRUE(item.preselected);
    }

    const Trasher trasher(home.policy, home.journal, std::make_shared<LiveTrash>(home.trash()));
    EXPECT_EQ(trasher.run(items, "session", nullptr, nullptr).moved.size(), 2);
    EXPECT_FALSE(fs::exists(paths[0]));
    EXPECT_EQ(home.contents(),
              (std::vector<std::string>{"files/gone 2.desktop", "files/gone.desktop",
                                        "info/gone 2.desktop.trashinfo", "info/gone.desktop.trashinfo"}));
    const PutBack putBack(home.policy, home.journal, std::make_shared<LiveRestore>());
    for (const auto& result : putBack.putBackSession("session"))
        EXPECT_TRUE(result.restored) << result.path << ": " << result.reason.value_or("");
    for (const auto& path : paths)
        EXPECT_EQ(readFile(path), text);
    EXPECT_EQ(home.contents(), std::vector<std::string>());
}

} // namespace
} // namespace orbel
