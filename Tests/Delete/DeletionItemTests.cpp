#include "Delete/Advice.h"
#include "Delete/DeletionItem.h"
#include "Delete/DeletionItemJson.h"
#include "Delete/ExclusionReason.h"
#include "Delete/ItemNote.h"
#include "Delete/ManageHint.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/TreeScanner.h"
#include "Support/Policies.h"
#include "Support/TemporaryFolder.h"
#include "Util/FileUrl.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using test::TemporaryFolder;

class DeletionItemTest : public ::testing::Test {
protected:
    SafetyPolicy policy() const { return {home.path(), test::linuxOptions()}; }

    void scan() {
        const ScanCancellation nobodyCancels;
        tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
    }
    NodeIndex node(std::string_view relative) const {
        return tree.index(home.path(relative), PathCanonicalizer::shared()).value();
    }
    std::optional<DeletionItem> item(std::string_view relative) const {
        return DeletionItem::fromTree(tree, node(relative), DeletionModule::largeOld, policy());
    }

    TemporaryFolder home;
    FileTree tree;
};

TEST_F(DeletionItemTest, CarriesWhatTheMoveWillProve) {
    home.file("docs/big", 100'000);
    home.file("Applications/Tool.app/Contents/Info.plist");
    home.file("Applications/More/Tool.app/Contents/Info.plist");
    scan();
    const auto big = item("docs/big").value();
    EXPECT_EQ(big.id, "largeOld:" + home.path("docs/big"));
    EXPECT_EQ(big.module, DeletionModule::largeOld);
    EXPECT_EQ(big.title, "big");
    EXPECT_EQ(big.detail, home.path("docs/big"));
    EXPECT_EQ(big.path, home.path("docs/big"));
    EXPECT_EQ(big.root, AllowedRoot::homeItem);
    EXPECT_EQ(big.scanStamp, FileStamp::of(big.path));
    EXPECT_EQ(big.estimatedBytes, tree.allocated(node("docs/big")));
    EXPECT_EQ(big.keep, std::nullopt);
    EXPECT_EQ(big.blockedReason, std::nullopt);
    EXPECT_EQ(big.note, std::nullopt);
    EXPECT_FALSE(big.preselected);
    EXPECT_TRUE(big.isSelectable());

    EXPECT_EQ(item("Applications/Tool.app")->root, AllowedRoot::applicationBundle);
    EXPECT_EQ(item("Applications/More/Tool.app")->root, AllowedRoot::applicationBundle);
    EXPECT_FALSE(DeletionItem::isApplicationBundle(home.path("docs/Tool.app"), policy()));
    EXPECT_FALSE(DeletionItem::isApplicationBundle(home.path("Applications/Tool"), policy()));

    fs::remove(home.path("docs/big"));
    EXPECT_EQ(item("docs/big"), std::nullopt);
}

TEST_F(DeletionItemTest, WhatCannotBeMovedIsBlockedByTheFirstReason) {
    home.file("docs/edited", 10);
    home.file("docs/trip/All.photoslibrary/x");
    home.file("docs/photos.photoslibrary/x");
    home.file("Library/Developer/cache/x");
    home.file("Library/Preferences/x");
    home.file("loose", 10);
    scan();
    home.file("docs/edited", 11);
    EXPECT_EQ(item("docs/edited")->blockedReason, "Changed since the scan — scan again");
    EXPECT_FALSE(item("docs/edited")->isSelectable());
    constexpr auto holdsLibrary = "Contains protected data (a photo library, keychain or backup)";
    EXPECT_EQ(item("docs/trip")->blockedReason, holdsLibrary);
    EXPECT_EQ(item("docs/photos.photoslibrary")->blockedReason, holdsLibrary) << "before the policy is asked";
    EXPECT_EQ(item("Library/Developer/cache")->blockedReason, "Developer caches — use Ostrevo Fennick");
    EXPECT_EQ(item("Library/Preferences/x")->blockedReason,
              "Inside Library: only Caches and Logs can be moved from here");
    EXPECT_EQ(item("loose")->blockedReason, "Too close to the home folder");
    tree.nodeFlags[node("docs/trip/All.photoslibrary/x")] |= NodeFlags::otherVolume.rawValue;
    tree.otherVolumeCount = 1;
    tree.protectedContainers.clear();
    EXPECT_EQ(item("docs/trip")->blockedReason, "Contains another volume: ~/docs/trip/All.photoslibrary/x");
}

TEST_F(DeletionItemTest, WhatWasLeftOutStaysAndSoDoesWhatHoldsIt) {
    home.file("docs/trip/archive/film", 5000);
    home.file("docs/trip/All.app/x", 10);
    scan();
    EXPECT_EQ(item("docs/trip")->blockedReason, std::nullopt);
    const ScanCancellation nobodyCancels;
    tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr,
                             {.paths = {home.path("docs/trip/archive")}, .patterns = {"x"}})
               .tree;
    EXPECT_EQ(item("docs/trip/archive")->blockedReason, "Left out of measuring");
    EXPECT_EQ(item("docs/trip/All.app")->blockedReason,
              "Holds a file left out of measuring: ~/docs/trip/All.app/x");
    EXPECT_EQ(item("docs/trip/All.app/x")->blockedReason, "Left out of measuring");
    tree.excludedNodes.erase(node("docs/trip/All.app/x"));
    EXPECT_EQ(item("docs/trip")->blockedReason, "Holds a folder left out of measuring: ~/docs/trip/archive");
    EXPECT_NE(adviceOn(*item("docs/trip")->blockedReason), std::nullopt);

    const Exclusions exclusions{.paths = {home.path("docs/trip/archive")}, .patterns = {}};
    const auto reason = [&](const char* path) {
        return exclusionReason(exclusions, home.path(path), home.path());
    };
    EXPECT_EQ(reason("docs/trip/archive/film"), "Left out of measuring");
    EXPECT_EQ(reason("docs/trip"), "Holds a folder left out of measuring: ~/docs/trip/archive");
    EXPECT_EQ(reason("docs/trip/archives"), std::nullopt);
}

TEST_F(DeletionItemTest, WarnsWhereAMoveFreesLess) {
    home.file("docs/linked", 10);
    home.hardLink("docs/other", "docs/linked");
    home.folder("docs/folder/inside");
    scan();
    EXPECT_EQ(item("docs/linked")->note, "Frees nothing while other links exist");
    EXPECT_EQ(item("docs/folder")->note, std::nullopt);
    tree.nodeFlags[node("docs/linked")] |= NodeFlags::mayShareBlocks.rawValue;
    EXPECT_EQ(item("docs/linked")->note, "May share storage; moving it may free less");
}

TEST_F(DeletionItemTest, TellsWhatInItCouldNotBeRead) {
    home.folder("docs/closed");
    home.folder("docs/two/closed");
    home.folder("docs/open");
    scan();
    EXPECT_EQ(item("docs")->note, std::nullopt);
    tree.nodeFlags[node("docs/closed")] |= NodeFlags::unreadable.rawValue;
    tree.nodeFlags[node("docs/two/closed")] |= NodeFlags::unreadable.rawValue;
    tree.recomputeTotals();
    EXPECT_EQ(item("docs")->note, "2 entries in it could not be read");
    EXPECT_EQ(item("docs/closed")->note, "1 entry in it could not be read");
    EXPECT_EQ(item("docs/open")->note, std::nullopt);
}

TEST(ItemNote, SaysOfUnreadableEntriesOnlyWhatIsTrueNow) {
    const std::optional<std::string> none;
    const auto known = ItemNote::withUnreadable("The whole folder goes with it", 1);
    EXPECT_EQ(known, "The whole folder goes with it · 1 entry in it could not be read");
    EXPECT_EQ(ItemNote::withUnreadable(known, 12),
              "The whole folder goes with it · 12 entries in it could not be read");
    EXPECT_EQ(ItemNote::withUnreadable(known, 0), "The whole folder goes with it");
    EXPECT_EQ(ItemNote::withUnreadable(ItemNote::withUnreadable(none, 3), 0), none);
    const std::optional<std::string> other = "Some entries in it could not be read";
    EXPECT_EQ(ItemNote::withUnreadable(other, 0), other) << "not what is said here";

    EXPECT_TRUE(ItemNote::saysMore(known));
    EXPECT_FALSE(ItemNote::saysLess(known));
    const auto linked = ItemNote::withUnreadable(std::string(ItemNote::otherLinks), 2);
    EXPECT_TRUE(ItemNote::saysLess(linked));
    EXPECT_TRUE(ItemNote::saysMore(linked));
    EXPECT_FALSE(ItemNote::saysLess(none) || ItemNote::saysMore(none));
}

TEST_F(DeletionItemTest, OfAnEmptyFolderTellsHowManyItHolds) {
    home.folder("docs/a/b/c");
    scan();
    const auto detail = [&](std::size_t nested) {
        auto seen = policy().seenFolders();
        const auto item = DeletionItem::emptyFolder(tree, node("docs/a"), nested, policy(), seen).value();
        EXPECT_EQ(item.module, DeletionModule::emptyFolders);
        return item.detail;
    };
    EXPECT_EQ(detail(3), home.path("docs/a") + " · holds 3 empty folders");
    EXPECT_EQ(detail(2), home.path("docs/a") + " · holds 2 empty folders");
    EXPECT_EQ(detail(1), home.path("docs/a"));
}

TEST_F(DeletionItemTest, OfABrokenShortcutTellsWhereItPointed) {
    home.file("docs/shortcut");
    scan();
    const auto item = [&](auto... given) {
        return DeletionItem::brokenShortcut(tree, node("docs/shortcut"), policy(), given...).value();
    };
    const auto plain = item(std::nullopt, std::nullopt, std::nullopt);
    EXPECT_EQ(plain.module, DeletionModule::brokenShortcuts);
    EXPECT_EQ(plain.detail, home.path("docs/shortcut"));
    EXPECT_EQ(plain.blockedReason, std::nullopt);
    const auto told = item("Shown only", "Its target is on a disk that is not connected", "/media/disk/x");
    EXPECT_EQ(told.detail, home.path("docs/shortcut") + " → /media/disk/x");
    EXPECT_EQ(told.blockedReason, "Shown only");
    EXPECT_EQ(told.note, "Its target is on a disk that is not connected");
}

TEST_F(DeletionItemTest, SurvivesBeingStored) {
    home.file("docs/odd \xFF%name", 10);
    scan();
    auto item = this->item("docs/odd \xFF%name").value();
    item.preselected = true;
    item.keep = {.path = home.path("docs"), .stamp = *FileStamp::of(home.path("docs"))};
    item.note = "A note";
    EXPECT_EQ(json(item).at("url"), "file://" + home.path("docs/odd%20%FF%25name"));
    const auto stored = json(item);
    auto expected = item;
    expected.preselected = false;
    EXPECT_EQ(stored.get<DeletionItem>(), expected);
    EXPECT_FALSE(stored.contains("preselected"));

    DeletionItem bare = item;
    bare.keep = std::nullopt;
    bare.blockedReason = std::nullopt;
    bare.note = std::nullopt;
    for (const auto* absent : {"keep", "blockedReason", "note"})
        EXPECT_FALSE(json(bare).contains(absent));
    for (const auto& [key, wrong] : std::vector<std::pair<const char*, json>>{{"url", "/plain/path"},
                                                                              {"url", "file://host/x"},
                                                                              {"module", "Map"},
                                                                              {"root", 1},
                                                                              {"title", nullptr}}) {
        auto bad = stored;
        bad[key] = wrong;
        EXPECT_THROW(static_cast<void>(bad.get<DeletionItem>()), json::exception) << key;
    }
}

TEST(Advice, IsGivenForWhatTheUserCanChange) {
    EXPECT_EQ(adviceOn("Too close to the home folder"),
              "Move it into a folder first; from there it can go to the Trash.");
    EXPECT_EQ(adviceOn("Protected: part of a mailbox (Maildir) (~/x)"),
              "Remove it with the program that keeps it.");
    for (const auto* pictures : {"Protected: ~/Pictures", "Protected: your pictures (~/Bilder)"})
        EXPECT_TRUE(adviceOn(pictures).value().starts_with("Your pictures stay:")) << pictures;
    EXPECT_TRUE(adviceOn("Protected: ~/.ssh").value().starts_with("It stays on purpose."));
    EXPECT_EQ(adviceOn("Protected by the system"), std::nullopt);
    EXPECT_EQ(adviceOn("Changed since the scan — scan again"), std::nullopt) << "says it itself";
    EXPECT_FALSE(adviceOn("On another volume").value().contains('{'));
}

TEST(ManageHint, AdvisesWhereItKnowsBetter) {
    const auto hint = [](const std::string& path) { return ManageHint::explain(path, "No", "/home/ann"); };
    EXPECT_TRUE(hint("/home/ann/Library/Application Support/MobileSync/Backup/1")
                    .starts_with("iPhone/iPad backup — manage in "));
    constexpr auto docker = "Docker disk image — manage in Docker Desktop → Settings → Resources";
    EXPECT_EQ(hint("/home/ann/x/Docker.raw"), docker);
    EXPECT_EQ(hint("/home/ann/Library/Containers/com.docker.docker/Data"), docker);
    EXPECT_EQ(hint("/home/ann/x/MyDocker.raw"), "No");
    constexpr auto developer = "Developer caches — use Ostrevo Fennick";
    EXPECT_EQ(hint("/home/ann/Library/Developer/Xcode"), developer);
    EXPECT_EQ(hint("/opt/DerivedData/x"), developer);
    for (const auto& [path, words] : std::vector<std::pair<std::string, std::string>>{
             {"/home/ann/.local/share/containers", "podman: podman system prune"},
             {"/home/ann/.local/share/containers/storage", "podman: podman system prune"},
             {"/var/lib/docker/overlay2", "docker: docker system prune"},
             {"/home/ann/.local/share/flatpak/app/org.a.B/x", "Flatpak: flatpak uninstall --user org.a.B"},
             {"/home/ann/.local/share/flatpak/app", "Flatpak: flatpak uninstall --unused"},
             {"/home/ann/.local/share/flatpak/app/-y", "Flatpak: flatpak uninstall --unused"},
             {"/home/ann/.local/share/flatpak/app/a;b c", "Flatpak: flatpak uninstall --user 'a;b c'"},
             {"/var/lib/flatpak/app/org.a.B", "Flatpak: flatpak uninstall --system org.a.B"},
             {"/var/lib/flatpak/runtime/org.a.B", "Flatpak: flatpak uninstall --unused"},
             {"/var/lib/snapd/snaps/tool-x_12.snap", "snap: sudo snap remove tool-x"},
             {"/var/lib/snapd/snaps/$(x)_12.snap", "snap: snap list --all"},
             {"/snap/tool-x/current/y", "snap: sudo snap remove tool-x"},
             {"/.snapshots/12/snapshot", "snapper: sudo snapper delete 12"},
             {"/home/.snapshots/12", "snapper: sudo snapper list -a"},
             {"/run/timeshift/backup/timeshift/snapshots/2026-11-22_10-00-00/localhost",
              "Timeshift: sudo timeshift --delete --snapshot 2026-11-22_10-00-00"},
             {"/home/ann/.local/share/JetBrains/Toolbox/apps/x", "JetBrains Toolbox: uninstall it there"},
             {"/home/ann/.local/share/Steam/steamapps/common/x", "Steam: uninstall its games there"},
             {"/home/ann/.local/share/gnome-boxes/images/x", "Boxes: gnome-boxes"},
             {"/var/log/journal/x", "journald: sudo journalctl --vacuum-size=200M"},
             {"/var/cache/apt/archives", "apt: sudo apt clean"}}) {
        EXPECT_EQ(hint(path), "Managed by " + words);
        const auto command = ManageHint::of(path).value().command;
        EXPECT_TRUE(command.empty() || words.ends_with(": " + command)) << command;
    }
    for (const auto* path : {"/home/ann/.snapshots/mine", "/home/ann/work/timeshift/snapshots/mine"})
        EXPECT_EQ(hint(path), "No");
    EXPECT_EQ(hint("/home/ann/.local/share/containers2"), "No");
    constexpr auto system = "System-wide: needs an administrator; Vanto does not change it";
    EXPECT_EQ(hint("/opt/x"), system);
    EXPECT_EQ(hint("/home/anna/x"), system);
    if (platform::conventions().hasFurtherRefusals) {
        EXPECT_EQ(ManageHint::explain("/media/ann/disk/steamapps/x", "On another volume", "/home/ann"),
                  "On another volume")
            << "one's own disk needs no administrator";
        EXPECT_EQ(ManageHint::explain("/snap/tool/12", "On another volume", "/home/ann"),
                  "Managed by snap: sudo snap remove tool")
            << "each is a volume of its own";
    }
    for (const auto* own : {"/home/ann", "/home/ann/x", "/Applications/X.app"})
        EXPECT_EQ(hint(own), "No") << own;
}

TEST_F(DeletionItemTest, AGameStaysInAnyLibraryAndIsUninstalledThere) {
    const auto manifest = [](std::string_view folder, std::string_view id) {
        return "\"AppState\"\n{\n\t\"appid\"\t\t\"" + std::string(id)
               + "\"\n\t\"name\"\t\t\"The \\\"Old\\\"\nHouse "
                 "3\"\n\t\"UserConfig\"\n\t{\n\t\t\"name\"\t\"x\"\n\t}\n"
               + "\t\"installdir\"\t\t\"" + std::string(folder) + "\"\n}\n";
    };
    home.file("Games/Library/steamapps/appmanifest_1.acf", "\"AppState\" { \"appid\" \"1\" ");
    home.file("Games/Library/steamapps/appmanifest_70.acf", manifest("House", "70"));
    home.file("Games/Library/steamapps/appmanifest_71.acf", manifest("Odd", "71 x"));
    for (const auto* game : {"House", "Odd", "Gone"})
        home.file(std::string("Games/Library/steamapps/common/") + game + "/data.pak", 100);
    scan();
    const auto reason = [&](const std::string& path) {
        return item("Games/Library/steamapps/common/" + path)->blockedReason.value_or("allowed");
    };
    constexpr auto words = "Managed by Steam: The \"Old\"[U+000A]House 3. Uninstall it there";
    EXPECT_EQ(reason("House"), words);
    EXPECT_EQ(reason("House/data.pak"), words);
    for (const auto* unknown : {"Odd", "Gone/data.pak"})
        EXPECT_EQ(reason(unknown), "Managed by Steam: uninstall its games there");
    EXPECT_EQ(item("Games/Library")->blockedReason, "Contains protected data: ~/Games/Library/steamapps");

    auto seen = policy().seenFolders();
    const auto hint = ManageHint::of(home.path("Games/Library/steamapps/common/House"), seen).value();
    EXPECT_EQ(hint.address, "steam://uninstall/70");
    EXPECT_EQ(ManageHint::explain(home.path("Games/Library/steamapps/common/House"), "On another volume",
                                  "/home/ann", &seen),
              words)
        << "a disk of games";
    EXPECT_TRUE(hint.isShownAs(words));
    EXPECT_FALSE(hint.isShownAs("On another volume"));
}

TEST(SteamGame, IsReadFromAnyBytes) {
    const auto name = [](std::string_view text) { return steamGameIn(text).value_or(SteamGame()).name; };
    EXPECT_EQ(name(R"("A"{"appid" "7" "name" "N" "installdir" "I"})"), "N");
    EXPECT_EQ(name(R"(// x "{"
"A" { "B" { "C" { "appid" "1" "name" "no" } } "appid" "7" "name" "{" "installdir" "}" } "name" "no")"),
              "{")
        << "only what stands directly in the first block";
    for (const auto* bad : {"", "\"", "{", "}", "}}}}\"A\"", "\"A\"{\"appid\"", "\"A\"{\"appid\"\"7\\",
                            "A { appid 7 }", "\"A\"{\"appid\"\"-7\"\"name\"\"N\"\"installdir\"\"I\"}"})
        EXPECT_EQ(steamGameIn(bad), std::nullopt) << bad;
    EXPECT_EQ(steamGameIn(std::string(1'000'000, '{')), std::nullopt);
}

TEST(FileUrl, CarriesEveryByte) {
    std::string path = "/";
    for (int byte = 1; byte < 256; ++byte)
        path += static_cast<char>(byte);
    EXPECT_EQ(pathOfFileUrl(fileUrl(path)), path);
    EXPECT_EQ(pathOfFileUrl("file:///a%2fb"), "/a/b");
    for (const auto* bad : {"", "/a", "http:///a", "file://a", "file:///%", "file:///%4", "file:///%4g"})
        EXPECT_EQ(pathOfFileUrl(bad), std::nullopt) << bad;
}

} // namespace
} // namespace orbel
