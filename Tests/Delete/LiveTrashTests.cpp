#include "Delete/LiveTrash.h"
#include "Journal/Barrier.h"
#include "Safety/FileStamp.h"
#include "Support/ChildProcess.h"
#include "Support/FakeMoves.h"
#include "Support/Faults.h"
#include "Support/TrashHome.h"
#include "Util/ReadFile.h"
#include "Util/Utf8.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {
namespace {

namespace fs = std::filesystem;
using test::Restricted;
using test::TrashHome;
using Names = std::vector<std::string>;

std::chrono::system_clock::time_point atNoon() {
    return std::chrono::sys_days{std::chrono::year{2024} / 3 / 1} + std::chrono::hours{12};
}

std::expected<std::string, std::string> moveToTrash(
    const TrashHome& home, const std::string& path,
    const std::function<void(const PlannedMove&)>& planned = [](const PlannedMove&) {}) {
    LiveTrash trash(home.trash(), atNoon);
    return test::moveToTrash(trash, path, planned);
}

unsigned modeOf(const std::string& path) {
    struct stat raw {};
    return ::lstat(path.c_str(), &raw) == 0 ? raw.st_mode & 07777 : 0;
}

/// What the Path line of an info file says, with its escapes undone.
std::string originIn(const std::string& info) {
    const auto start = info.find("Path=") + 5;
    const auto line = info.substr(start, info.find('\n', start) - start);
    std::string path;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '%') {
            path += static_cast<char>(std::stoi(line.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            path += line[i];
        }
    }
    return path;
}

/// The item is refused with these words, and nothing changed: it lies where it was, the Trash holds what it
/// held.
void expectRefused(const TrashHome& home, const std::string& path, const std::string& words) {
    const auto before = FileStamp::of(path);
    const auto contents = home.contents();
    const auto moved = moveToTrash(home, path);
    ASSERT_FALSE(moved) << "moved to " << *moved;
    EXPECT_EQ(moved.error(), words);
    EXPECT_EQ(FileStamp::of(path), before);
    EXPECT_EQ(home.contents(), contents);
}

TEST(LiveTrash, MovesEveryKindOfItemUnchanged) {
    const TrashHome home;
    home.file("folder/inside", 5);
    home.link("dangling", "/nowhere");
    ASSERT_EQ(::mkfifo(home.path("pipe").c_str(), 0600), 0);
    const auto umaskBefore = ::umask(0);
    for (const auto& path : {home.file("file.txt", 9), home.path("folder"), home.path("dangling"),
                             home.path("pipe"), home.file(".hidden"), home.folder("empty.d/")}) {
        const std::string name = fs::path(path).filename().empty() ? "empty.d" : fs::path(path).filename();
        const auto stamp = FileStamp::of(path);
        const auto moved = moveToTrash(home, path);
        ASSERT_TRUE(moved) << moved.error();
        EXPECT_EQ(*moved, home.trashed(name));
        EXPECT_EQ(FileStamp::of(*moved), stamp);
        EXPECT_EQ(originIn(readFile(home.infoOf(name)).value()), home.path(name));
        EXPECT_EQ(modeOf(home.infoOf(name)), 0600u);
    }
    ::umask(umaskBefore);
    EXPECT_EQ(home.contents().size(), 12u);
    for (const auto* folder : {"", "/files", "/info"})
        EXPECT_EQ(modeOf(home.trash() + folder), 0700u) << folder;
    EXPECT_EQ(modeOf(home.path(".local")), 0700u) << "a missing data folder is made for the user alone";
}

TEST(LiveTrash, TellsWhereAndWhenInTheInfoFile) {
    const TrashHome home;
    const auto path = home.file("a b%c\n\xC3\xA9#?~_.-z");
    const auto moved = moveToTrash(home, path);
    ASSERT_TRUE(moved) << moved.error();
    const std::time_t noon = std::chrono::system_clock::to_time_t(atNoon());
    std::tm local{};
    ::localtime_r(&noon, &local);
    char date[32];
    std::strftime(date, sizeof date, "%FT%T", &local);
    EXPECT_EQ(readFile(home.infoOf("a b%c\n\xC3\xA9#?~_.-z")),
              "[Trash Info]\nPath=" + home.path() + "/a%20b%25c%0A%C3%A9%23%3F~_.-z\nDeletionDate=" + date
                  + "\n");

    const auto notText = home.file("\xFF\xFE.\x80");
    ASSERT_TRUE(moveToTrash(home, notText));
    EXPECT_EQ(originIn(readFile(home.infoOf("\xFF\xFE.\x80")).value()), notText);
}

TEST(LiveTrash, NeverReplacesWhatIsInTheTrash) {
    const TrashHome home;
    home.putIntoTrash("report.pdf", "/elsewhere", "trashed before");
    home.file(".local/share/Trash/files/report 2.pdf", "an orphan");
    home.link(".local/share/Trash/files/report 3.pdf", "/nowhere");
    home.folder(".local/share/Trash/files/report 4.pdf");
    home.file(".local/share/Trash/info/report 5.pdf.trashinfo", "stale");
    const auto path = home.file("report.pdf", "new");
    home.hardLink(".local/share/Trash/files/report 6.pdf", "report.pdf");

    EXPECT_EQ(moveToTrash(home, path), home.trashed("report 7.pdf"));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(readFile(home.trashed("report.pdf")), "trashed before");
    EXPECT_EQ(readFile(home.trashed("report 2.pdf")), "an orphan");
    EXPECT_TRUE(fs::is_symlink(home.trashed("report 3.pdf")));
    EXPECT_TRUE(fs::is_directory(home.trashed("report 4.pdf")));
    EXPECT_EQ(readFile(home.infoOf("report 5.pdf")), "stale");
    EXPECT_EQ(readFile(home.trashed("report 6.pdf")), "new");
    EXPECT_EQ(originIn(readFile(home.infoOf("report 7.pdf")).value()), path);
}

TEST(LiveTrash, PlansAnewWhenOthersTookTheName) {
    const TrashHome home;
    const auto path = home.file("film.mkv", "mine");
    std::vector<PlannedMove> plans;
    const auto moved = moveToTrash(home, path, [&](const PlannedMove& plan) {
        EXPECT_FALSE(fs::exists(plan.trashPath) || fs::exists(plan.infoPath.value()))
            << "made before it was written down";
        // Others are quicker: first with the item's name, then with that of the info file.
        if (plans.empty())
            home.file(".local/share/Trash/files/film.mkv", "theirs");
        else if (plans.size() == 1)
            home.file(".local/share/Trash/info/film 2.mkv.trashinfo", "theirs");
        plans.push_back(plan);
    });
    ASSERT_EQ(moved, home.trashed("film 3.mkv"));
    ASSERT_EQ(plans.size(), 3u);
    EXPECT_EQ(plans[0].trashPath, home.trashed("film.mkv"));
    EXPECT_EQ(plans[0].infoPath, home.infoOf("film.mkv"));
    EXPECT_EQ(plans[2].trashPath, *moved);
    EXPECT_EQ(readFile(plans[2].infoPath.value()), plans[2].infoContent);
    EXPECT_EQ(readFile(*moved), "mine");
    EXPECT_EQ(home.contents(), (Names{"files/film 3.mkv", "files/film.mkv", "info/film 2.mkv.trashinfo",
                                      "info/film 3.mkv.trashinfo"}))
        << "an attempt that failed leaves nothing";
    EXPECT_EQ(readFile(home.infoOf("film 2.mkv")), "theirs");
}

TEST(LiveTrash, MovesNothingWithoutItsInfoFile) {
    const TrashHome home;
    const auto path = home.file("file");
    LiveTrash trash(home.trash(), atNoon);
    for (const bool isReplaced : {false, true}) {
        Barrier barrier;
        const auto prepared = trash.prepare(trash.plan({&path, 1}, barrier).front().value(), barrier);
        ASSERT_TRUE(prepared) << prepared.error().words;
        fs::remove(home.infoOf("file")); // as emptying the Trash does
        if (isReplaced)
            home.file(".local/share/Trash/info/file.trashinfo", "theirs");
        const auto moved = (*prepared)->make(barrier);
        ASSERT_FALSE(moved);
        EXPECT_TRUE(moved.error().isPlanVoid);
        EXPECT_TRUE(fs::exists(path));
    }
    EXPECT_EQ(home.contents(), Names{"info/file.trashinfo"}) << "another program's is left alone";
}

TEST(LiveTrash, GivesEachItemOfAGroupANameOfItsOwn) {
    const TrashHome home;
    home.putIntoTrash("index.js", "/elsewhere");
    std::vector<std::string> paths;
    for (const std::string folder : {"a/", "b/", "c/"})
        paths.push_back(home.file(folder + "index.js", folder));
    LiveTrash trash(home.trash(), atNoon);
    Barrier barrier;
    const auto plans = trash.plan(paths, barrier);
    EXPECT_EQ(home.contents().size(), 2u) << "a plan makes nothing";
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const auto name = "index " + std::to_string(i + 2) + ".js";
        const auto prepared = trash.prepare(plans[i].value(), barrier);
        ASSERT_TRUE(prepared) << prepared.error().words;
        EXPECT_EQ((*prepared)->make(barrier).value_or(""), home.trashed(name));
        EXPECT_EQ(originIn(readFile(home.infoOf(name)).value()), paths[i]);
    }
}

TEST(LiveTrash, AStrayItemKeepsItsNameInALargeGroupToo) {
    const TrashHome home;
    home.file(".local/share/Trash/files/3", "an orphan");
    std::vector<std::string> paths;
    for (int i = 0; i < 40; ++i)
        paths.push_back(home.file("docs/" + std::to_string(i), "mine"));
    LiveTrash trash(home.trash(), atNoon);
    Barrier barrier;
    auto plans = trash.plan(paths, barrier);
    EXPECT_EQ(plans[3].value().trashPath, home.trashed("3 2"));
    EXPECT_EQ(plans[4].value().trashPath, home.trashed("4"));
    home.file(".local/share/Trash/files/4", "an orphan"); // not listed
    const auto prepared = trash.prepare(plans[4].value(), barrier);
    const auto moved = (*prepared)->make(barrier);
    ASSERT_FALSE(moved);
    EXPECT_TRUE(moved.error().isPlanVoid);
    plans = trash.plan(paths, barrier);
    EXPECT_EQ(plans[4].value().trashPath, home.trashed("4 2")) << "one that was met is known from then on";
    EXPECT_EQ(readFile(home.trashed("4")), "an orphan");
}

TEST(LiveTrash, CutsLongNamesBetweenCharacters) {
    const TrashHome home;
    std::string stem = "ab";
    while (stem.size() + 3 + 4 <= 255)
        stem += "\xE2\x82\xAC";             // three bytes each
    for (int copy = 0; copy < 12; ++copy) { // names get a number of one and of two digits
        const auto moved = moveToTrash(home, home.file(stem + ".txt"));
        ASSERT_TRUE(moved) << moved.error();
        const std::string name = fs::path(*moved).filename();
        EXPECT_LE(name.size() + std::string(".trashinfo").size(), 255u);
        EXPECT_GE(name.size() + std::string(".trashinfo").size(), 252u) << "no more is cut than needed";
        EXPECT_TRUE(isValidUtf8(name)) << name;
        EXPECT_TRUE(name.ends_with(".txt"));
        EXPECT_EQ(originIn(readFile(home.infoOf(name)).value()), home.path(stem + ".txt"));
    }
    EXPECT_TRUE(moveToTrash(home, home.file(std::string(255, '\x80')))) << "no text at all";
    EXPECT_TRUE(moveToTrash(home, home.file("." + std::string(254, 'x')))) << "all of it after the dot";
}

TEST(LiveTrash, RefusesATrashThatIsNotTheUsersOwn) {
    for (const std::string part : {"", "/files", "/info"}) {
        const TrashHome home;
        const auto path = home.file("file");
        const auto elsewhere = home.folder("elsewhere");
        const auto words = [&](const std::string& reason) {
            return "The Trash cannot be used: " + home.trash() + part + reason;
        };
        home.folder(".local/share/Trash/files");
        home.folder(".local/share/Trash/info");
        {
            const Restricted open(home.trash() + part, 0777);
            expectRefused(home, path, words(" can be changed by every user"));
        }
        if (test::isRoot()) {
            ASSERT_EQ(::chown((home.trash() + part).c_str(), 65534, 65534), 0);
            expectRefused(home, path, words(" belongs to another user"));
        }
        fs::remove_all(home.trash() + part);
        home.link(".local/share/Trash" + part, elsewhere);
        expectRefused(home, path, words(" is not a real folder"));
        EXPECT_TRUE(fs::is_empty(elsewhere));
        fs::remove(home.trash() + part);
        home.file(".local/share/Trash" + part);
        expectRefused(home, path, words(" is not a real folder"));
    }
    const TrashHome home;
    home.folder("data");
    home.link(".local/share", home.path("data"));
    EXPECT_EQ(moveToTrash(home, home.file("file")), home.path("data/Trash/files/file"))
        << "the folders above it are the user's to arrange";
    home.file("no folder");
    Barrier barrier;
    const auto file = home.file("file");
    EXPECT_EQ(LiveTrash(home.path("no folder/Trash")).plan({&file, 1}, barrier).front().error(),
              "The Trash cannot be used: " + home.path("no folder") + " is not a real folder");
}

TEST(LiveTrash, FollowsNoLinkOnTheWayToTheItem) {
    const std::string words = "A folder on its path was replaced by a link or a file";
    const TrashHome home;
    home.file("decoys/inner/file", "decoy");
    home.file("real/inner/file", "mine");
    home.link("link", home.path("real"));
    expectRefused(home, home.path("link/inner/file"), words);
    expectRefused(home, home.path("real/inner/file/x"), words);
    expectRefused(home, home.path("real/missing/file"), "It is no longer there");
    expectRefused(home, home.path("real/inner/missing"), "It is no longer there");
    for (const auto& path :
         {std::string("file"), std::string("/"), std::string(), home.path("real/../real/inner/file"),
          home.path("real") + std::string("\0/inner", 7)})
        expectRefused(home, path, "It is not the path of an item");

    const auto moved = moveToTrash(home, home.path("real/inner/file"), [&](const PlannedMove&) {
        test::replaceByLink(home.path("real"), home.path("aside"), home.path("decoys"));
    });
    EXPECT_EQ(moved, std::unexpected(words));
    EXPECT_EQ(readFile(home.path("decoys/inner/file")), "decoy");
    EXPECT_EQ(home.contents(), Names{});
}

TEST(LiveTrash, RefusesTheTrashWhatIsInItAndWhatHoldsIt) {
    const TrashHome home;
    home.putIntoTrash("file", "/elsewhere");
    for (const auto& path :
         {home.trash(), home.trash() + "/files", home.trashed("file"), home.infoOf("file")})
        expectRefused(home, path, "It is in the Trash already");
    for (const auto& path : {home.path(".local"), home.path(".local//share/")})
        expectRefused(home, path, "It contains the Trash");
}

TEST(LiveTrash, NeverCopiesToAnotherVolume) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    const TrashHome home;
    home.folder("other");
    home.folder("twin");
    home.file("original/file", "the same device");
    home.file("holder/inner/file");
    test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(home.path("other").c_str());
        test::bindMount(home.path("original").c_str(), home.path("twin").c_str());
        const std::string words = "It would have to be copied to another volume";
        expectRefused(home, home.file("other/file"), words);
        expectRefused(home, home.path("twin/file"), words);
        EXPECT_EQ(home.contents(), Names{});

        test::mountTmpfs(home.path("holder/inner").c_str());
        const auto reason = "Contains another volume: " + home.path("holder/inner");
        expectRefused(home, home.path("holder"), reason);
        expectRefused(home, home.path("holder/inner"), reason);
        EXPECT_TRUE(moveToTrash(home, home.path("original/file")));
    });
}

TEST(LiveTrash, LeavesNothingBehindWhenRightsAreMissing) {
    test::inChildProcess([] {
        if (test::isRoot()) // for whom none are missing
            test::becomeOtherUser();
        const TrashHome home;
        ASSERT_TRUE(moveToTrash(home, home.file("first")));
        home.file("locked/file");
        home.folder("closed");
        home.file("read-only/file");
        const Restricted parent(home.path("locked"), 0555);
        const Restricted item(home.path("closed"), 0555); // its ".." cannot be written, which moving it means
        expectRefused(home, home.path("locked/file"), "Permission denied");
        expectRefused(home, home.path("closed"), "Permission denied");
        const Restricted unlisted(home.path("read-only"), 0300);
        EXPECT_TRUE(moveToTrash(home, home.path("read-only/file"))) << "a folder need not be readable";
        const Restricted info(home.trash() + "/info", 0500);
        expectRefused(home, home.file("file"), "Its info file could not be written: Permission denied");
    });
}

TEST(LiveTrash, LeavesNothingBehindWhenTheDiskIsFull) {
    const TrashHome small;
    const auto path = small.file("file");
    ASSERT_TRUE(moveToTrash(small, small.file("first")));
    test::inChildProcess([&] {
        test::limitFileSize(20);
        expectRefused(small, path, "Its info file could not be written: File too large");
    });
    if (!test::isRoot())
        GTEST_SKIP() << "mounting a small disk needs root";
    const TrashHome home;
    test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(home.path().c_str());
        const auto item = home.file("file");
        ASSERT_TRUE(moveToTrash(home, home.file("first")));
        test::fillDisk(home.path());
        expectRefused(home, item, "Its info file could not be written: No space left on device");
    });
}

TEST(LiveTrash, ReachesItemsDeeperThanPathsMayBe) {
    const TrashHome home;
    std::string path = home.folder("deep");
    const std::string name(250, 'd');
    int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    while (path.size() < 5000) {
        ASSERT_EQ(::mkdirat(folder, name.c_str(), 0700), 0);
        const int inner = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(folder);
        folder = inner;
        path += "/" + name;
    }
    ::close(folder);
    const auto moved = moveToTrash(home, path);
    ASSERT_TRUE(moved) << moved.error();
    EXPECT_TRUE(fs::is_directory(*moved));
    EXPECT_EQ(originIn(readFile(home.infoOf(fs::path(*moved).filename().string())).value()), path);
}

} // namespace
} // namespace orbel
