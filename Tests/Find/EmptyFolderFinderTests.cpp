#include "Find/EmptyFolderFinder.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"
#include "Support/ChildProcess.h"
#include "Support/MoverHome.h"
#include "Support/Policies.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <random>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using test::TemporaryFolder;
using Counts = std::map<std::string, std::size_t>; ///< by path below the root, the folders inside

FileTree scan(const std::string& root) {
    const ScanCancellation nobodyCancels;
    return TreeScanner::scan(root, 1, nobodyCancels, nullptr).tree;
}

Counts found(const std::string& root, const SafetyPolicy& policy) {
    Counts counts;
    for (const auto& row : EmptyFolderFinder().run(scan(root), policy, currentDate()))
        counts[row.item.path.substr(root.size() + 1)] = row.nestedCount;
    return counts;
}

class EmptyFolderTest : public ::testing::Test {
protected:
    Counts inHome(const std::string& relative = "") const {
        return found(relative.empty() ? home.path() : home.path(relative), policy);
    }

    TemporaryFolder home;
    SafetyPolicy policy{home.path(), test::linuxOptions()};
};

TEST_F(EmptyFolderTest, LeavesAloneWhatIsEmptyOnPurpose) {
    for (const auto* path :
         {"docs/empty/inner", "docs/Tool.app/Contents", "docs/repo/.git/refs", "docs/repo/CVS/x",
          "docs/.cfg/x", "docs/marked/.stfolder", "docs/marked/other", "Music", "docs/web/node_modules/x/y",
          "snap/x/common", ".local/share/x", "Library/Caches/x", "photos/All.photoslibrary"})
        home.folder(path);
    home.file("docs/plain/.DS_Store");
    home.link("docs/linked/link", "nowhere");
    EXPECT_EQ(inHome(), (Counts{{"docs/empty", 2}, {"docs/plain", 1}, {"docs/marked/other", 1}}));
    EXPECT_EQ(inHome("docs/repo/.git"), Counts()) << "nor where it is asked for by name";
    EXPECT_EQ(inHome("docs/.cfg"), Counts());
    EXPECT_EQ(inHome("snap"), Counts());
    EXPECT_EQ(inHome("docs/empty"), (Counts{{"inner", 1}})) << "never the root";
}

TEST_F(EmptyFolderTest, LeavesAloneThePartsOfOneThing) {
    home.file("code/bare.git/HEAD");
    for (const auto* path :
         {"code/bare.git/objects/info", "code/bare.git/refs/tags", "code/bare.git/branches", "lists/box/cur",
          "lists/box/new", "lists/box/tmp", "games/prefix/dosdevices", "games/prefix/drive_c/users",
          "backup/restic/data/00", "backup/restic/locks", "backup/restic/index", "backup/restic/keys",
          "backup/restic/snapshots", "backup/borg/data/0", "py/env/include", "code/other/refs/tags"})
        home.folder(path);
    for (const auto* path : {"games/prefix/system.reg", "backup/restic/config", "backup/borg/README",
                             "backup/borg/config", "backup/borg/nonce", "py/env/pyvenv.cfg"})
        home.file(path);
    EXPECT_EQ(inHome(), (Counts{{"code/other", 3}}));
    EXPECT_EQ(inHome("code/bare.git/refs"), Counts()) << "nor where it is asked for by name";
}

TEST_F(EmptyFolderTest, LeavesAloneWhatSettingsName) {
    for (const auto* path : {"my/Downloads", "my/Music/sub", "disks/backup", "disks/other"})
        home.folder(path);
    home.file(".config/user-dirs.dirs", std::string_view("XDG_DOWNLOAD_DIR=\"$HOME/my/Downloads\"\n"
                                                         "XDG_MUSIC_DIR=\"$HOME/my/Music\"\n"));
    auto options = test::linuxOptions();
    options.places = [usual = options.places, mountPoint = home.path("disks/backup")](const std::string& of) {
        auto places = usual(of);
        places.namedFolders.push_back(mountPoint);
        return places;
    };
    EXPECT_EQ(found(home.path(), SafetyPolicy(home.path(), options)),
              (Counts{{"disks/other", 1}, {"my/Music/sub", 1}}));
}

TEST_F(EmptyFolderTest, TellsWhatMayBeTicked) {
    home.folder("docs/old/inner");
    home.folder("docs/new/inner");
    home.folder("Pictures/blocked/inner");
    const auto before = fs::file_time_type::clock::now() - 48h;
    for (const auto* path :
         {"docs/old/inner", "docs/old", "docs/new", "Pictures/blocked/inner", "Pictures/blocked"})
        fs::last_write_time(home.path(path), before);
    const auto rows = EmptyFolderFinder().run(scan(home.path()), policy, currentDate());
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0].item.blockedReason, "Protected: ~/Pictures");
    EXPECT_FALSE(rows[0].item.preselected);
    EXPECT_FALSE(rows[1].item.preselected) << "something in it was made just now";
    EXPECT_TRUE(rows[2].item.preselected);
    EXPECT_EQ(rows[2].item.detail, home.path("docs/old") + " · holds 2 empty folders");
}

TEST_F(EmptyFolderTest, NeverListsAMountPoint) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    home.folder("docs/disk");
    home.folder("docs/empty");
    test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(home.path("docs/disk").c_str());
        EXPECT_EQ(inHome(), (Counts{{"docs/empty", 1}}));
    });
}

TEST_F(EmptyFolderTest, LooksOnlyIntoTheHomeWhereTheRootHoldsIt) {
    home.folder("root/.homes/me/docs/x/empty");
    home.file("root/.homes/me/docs/file");
    home.folder("root/other/empty");
    const SafetyPolicy guarded(home.path("root/.homes/me"), test::linuxOptions());
    EXPECT_EQ(found(home.path("root"), guarded), (Counts{{".homes/me/docs/x", 2}}));
    EXPECT_EQ(found(home.path("root/other"), guarded), (Counts{{"empty", 1}})) << "asked for by name";
}

/// The answer by looking at the disk itself: how many folders go with this one, none when it has to stay.
std::optional<std::size_t> emptyFolders(const fs::path& folder) {
    const auto name = folder.filename().string();
    if (name.starts_with('.') || name == "node_modules" || name.ends_with(".app"))
        return std::nullopt;
    std::size_t count = 1;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const auto inside = entry.is_directory() ? emptyFolders(entry) : std::nullopt;
        if (!inside && entry.path().filename() != ".DS_Store")
            return std::nullopt;
        count += inside.value_or(0);
    }
    return count;
}

void collectTopmost(const fs::path& folder, const fs::path& root, Counts& counts) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        const auto name = entry.path().filename().string();
        if (!entry.is_directory() || name.starts_with('.') || name == "node_modules"
            || name.ends_with(".app"))
            continue;
        if (const auto count = emptyFolders(entry))
            counts[entry.path().lexically_relative(root)] = *count;
        else
            collectTopmost(entry, root, counts);
    }
}

TEST_F(EmptyFolderTest, AgreesWithTheDiskOnRandomTrees) {
    constexpr std::array names{"a", "b", "c", "d", ".h", ".git", "X.app", "node_modules"};
    std::mt19937 random(4711);
    std::size_t all = 0;
    for (int round = 0; round < 20; ++round) {
        const auto root = fs::path(home.folder("docs/root" + std::to_string(round)));
        std::vector<fs::path> folders{root};
        for (int i = 0; i < 60; ++i) {
            const auto& parent = folders[random() % folders.size()];
            // The rare names only now and then, or nothing would be left to find.
            const auto path = parent / names[random() % (random() % 4 == 0 ? names.size() : 4)];
            if (random() % 8 == 0)
                home.file((parent / (random() % 3 == 0 ? "file" : ".DS_Store"))
                              .lexically_relative(home.path())
                              .string());
            else if (fs::create_directory(path))
                folders.push_back(path);
        }
        Counts wanted;
        collectTopmost(root, root, wanted);
        EXPECT_EQ(found(root, policy), wanted) << round;
        all += wanted.size();
    }
    EXPECT_GT(all, 100) << "the trees are no test if there is little in them";
}

TEST(EmptyFolders, MoveOnlyWhileTheyAreEmpty) {
    const test::MoverHome home;
    home.folder("docs/empty/inner");
    auto rows = EmptyFolderFinder().run(scan(home.path()), home.policy, home.now);
    ASSERT_EQ(rows.size(), 1);
    home.file("docs/empty/inner/new");
    EXPECT_EQ(test::skipReason(home.run({rows[0].item})), "No longer empty: scan again");
    fs::remove(home.path("docs/empty/inner/new"));
    home.file("docs/empty/inner/.DS_Store/new");
    EXPECT_EQ(test::skipReason(home.run({rows[0].item})), "No longer empty: scan again")
        << "only a file of this name is harmless";
    fs::remove_all(home.path("docs/empty/inner/.DS_Store"));
    rows = EmptyFolderFinder().run(scan(home.path()), home.policy, home.now);
    EXPECT_EQ(home.run({rows.at(0).item}).moved.size(), 1);
    EXPECT_FALSE(fs::exists(home.path("docs/empty")));
}

} // namespace
} // namespace orbel
