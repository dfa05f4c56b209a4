#include "Safety/FileStamp.h"
#include "Support/ChildProcess.h"
#include "Support/FakeMoves.h"
#include "Support/Faults.h"
#include "Support/TrashHome.h"
#include "Util/ReadFile.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::TrashHome;
using Names = std::vector<std::string>;

/// The item stays in the Trash with its info file, and what lies at the target stays what it is.
void expectRefused(const TrashHome& home, const std::string& to, const std::string& words) {
    const auto item = FileStamp::of(home.trashed("item"));
    const auto target = FileStamp::of(to);
    const auto contents = home.contents();
    const auto moved = test::putBack(home.trashed("item"), to);
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error(), words);
    EXPECT_EQ(FileStamp::of(home.trashed("item")), item);
    EXPECT_EQ(FileStamp::of(to), target);
    EXPECT_EQ(home.contents(), contents);
}

TEST(LiveRestore, PutsItemsBackUnchangedAndRemovesTheirInfoFiles) {
    const TrashHome home;
    for (const auto* name : {"file", "folder", "dangling", "stays"})
        home.putIntoTrash(name, home.path(name));
    fs::remove(home.trashed("folder"));
    home.file(".local/share/Trash/files/folder/inside");
    fs::remove(home.trashed("dangling"));
    home.link(".local/share/Trash/files/dangling", "/nowhere");
    for (const auto* name : {"file", "folder", "dangling"}) {
        const auto stamp = FileStamp::of(home.trashed(name));
        const auto moved = test::putBack(home.trashed(name), home.path(name));
        ASSERT_TRUE(moved) << moved.error();
        EXPECT_EQ(FileStamp::of(home.path(name)), stamp);
    }
    EXPECT_TRUE(fs::exists(home.path("folder/inside")));
    EXPECT_EQ(home.contents(), (Names{"files/stays", "info/stays.trashinfo"}));
}

TEST(LiveRestore, NeverReplacesAnything) {
    const TrashHome home;
    home.putIntoTrash("item", home.path("item"), "trashed");
    home.link("dangling", "/nowhere");
    home.hardLink("twin", ".local/share/Trash/files/item");
    for (const auto& occupied :
         {home.file("file", "kept"), home.path("dangling"), home.folder("empty"), home.path("twin")})
        expectRefused(home, occupied, "Something already exists there");
    EXPECT_EQ(readFile(home.path("file")), "kept");
}

TEST(LiveRestore, LeavesTheItemWhereItIsWhenItCannotGoBack) {
    const TrashHome home;
    home.putIntoTrash("item", home.path("item"));
    EXPECT_EQ(test::putBack(home.trashed("gone"), home.path("gone")),
              std::unexpected(std::string("It is no longer there")));
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    home.folder("other");
    test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(home.path("other").c_str());
        expectRefused(home, home.path("other/item"), "It would have to be copied to another volume");
        test::becomeOtherUser();
        const TrashHome own;
        own.putIntoTrash("item", own.path("item"));
        own.folder("locked");
        const test::Restricted locked(own.path("locked"), 0555);
        expectRefused(own, own.path("locked/item"), "Permission denied");
    });
}

TEST(LiveRestore, ReachesTheTrashThroughALink) {
    const TrashHome home;
    home.putIntoTrash("item", home.path("item"));
    home.link("trash", home.trash());
    ASSERT_TRUE(test::putBack(home.path("trash/files/item"), home.path("item")));
    EXPECT_TRUE(fs::exists(home.path("item")));
    EXPECT_EQ(home.contents(), Names{});
}

TEST(LiveRestore, RemovesNothingButTheItemsOwnInfoFile) {
    const TrashHome home;
    home.file("elsewhere/item.trashinfo", "not in the Trash");
    home.file("plain/files/item");
    home.file("plain/info/other.trashinfo");
    ASSERT_TRUE(test::putBack(home.path("plain/files/item"), home.path("first")));
    EXPECT_TRUE(fs::exists(home.path("plain/info/other.trashinfo")));

    home.file("linked/files/item");
    home.link("linked/info", home.path("elsewhere"));
    ASSERT_TRUE(test::putBack(home.path("linked/files/item"), home.path("second")));
    EXPECT_TRUE(fs::exists(home.path("elsewhere/item.trashinfo")));

    home.file("folder/files/item");
    home.folder("folder/info/item.trashinfo");
    ASSERT_TRUE(test::putBack(home.path("folder/files/item"), home.path("third")));
    EXPECT_TRUE(fs::exists(home.path("folder/info/item.trashinfo")));

    home.file("no trash/item");
    home.file("info/item.trashinfo");
    ASSERT_TRUE(test::putBack(home.path("no trash/item"), home.path("fourth")));
    EXPECT_TRUE(fs::exists(home.path("info/item.trashinfo")));
}

} // namespace
} // namespace orbel
