#include "Journal/JournalLine.h"
#include "Support/ChildProcess.h"
#include "Support/JournalScene.h"
#include "Util/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {
namespace {

using test::JournalScene;
using test::skippedEntry;
using test::titlesOf;
using test::trashedEntry;
using Titles = std::vector<std::string>;

mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

TEST(JournalStore, TheFirstAppendMakesFolderAndFile) {
    JournalScene scene;
    ASSERT_TRUE(scene.store.append(trashedEntry("first")));
    EXPECT_EQ(titlesOf(scene.store.entries()), Titles{"first"});
    EXPECT_EQ(scene.content().find('\n'), scene.content().size() - 1) << "exactly one line";
    EXPECT_EQ(modeOf(scene.path), 0600u);
    EXPECT_EQ(modeOf(scene.home.path("data")), 0700u);
    ASSERT_TRUE(scene.store.append(skippedEntry("second")));
    EXPECT_EQ(titlesOf(scene.store.entries()), (Titles{"first", "second"}));

    JournalStore deep(scene.home.path("a/b/c/journal.jsonl"));
    ASSERT_TRUE(deep.append(trashedEntry("deep")));
    EXPECT_EQ(titlesOf(deep.entries()), Titles{"deep"});
    EXPECT_EQ(JournalStore::defaultPath("/home/ann/.local/share"),
              "/home/ann/.local/share/Ostrevo Orbel/journal.jsonl");
}

TEST(JournalStore, PreflightChangesNoContent) {
    JournalScene scene;
    ASSERT_TRUE(scene.store.preflight());
    EXPECT_EQ(scene.content(), "");
    EXPECT_EQ(modeOf(scene.path), 0600u);
    for (const std::string content : {"a torn line", "a line\n"}) {
        scene.write(content);
        ASSERT_TRUE(scene.store.preflight());
        EXPECT_EQ(scene.content(), content);
    }
}

TEST(JournalStore, TheFileIsPrivateWhateverTheUmask) {
    for (const mode_t mask : {0, 0777}) {
        JournalScene scene;
        scene.home.folder("data");
        test::inChildProcess([&] {
            ::umask(mask);
            EXPECT_TRUE(scene.store.append(trashedEntry()));
            EXPECT_EQ(modeOf(scene.path), 0600u);
        });
    }
    JournalScene scene;
    scene.write("");
    ASSERT_EQ(::chmod(scene.path.c_str(), 0666), 0);
    ASSERT_TRUE(scene.store.preflight());
    EXPECT_EQ(modeOf(scene.path), 0600u) << "one that others could write to";
}

TEST(JournalStore, ATornLastLineNeverDamagesTheNext) {
    JournalScene scene;
    const auto line = journalLine(trashedEntry("torn")).value() + "\n";
    for (std::size_t length = 0; length <= line.size(); length += length < line.size() - 4 ? 13 : 1) {
        for (const auto& tail : {std::string(), std::string(300, '\0')}) {
            const auto torn = line.substr(0, length) + tail;
            scene.write(torn);
            ASSERT_TRUE(scene.store.append(trashedEntry("next")));
            const auto titles = titlesOf(scene.store.entries());
            ASSERT_FALSE(titles.empty()) << length;
            EXPECT_EQ(titles.back(), "next") << length;
            EXPECT_TRUE(scene.content().starts_with(torn)) << "nothing is ever rewritten";
        }
    }
}

TEST(JournalStore, NothingPutInItsPlaceIsWrittenToOrBelieved) {
    const auto line = journalLine(trashedEntry("false")).value() + "\n";
    const std::pair<const char*, std::function<void(const JournalScene&)>> cases[] = {
        {"symbolic link",
         [&](auto& scene) { scene.home.link("data/journal.jsonl", scene.home.file("other", line)); }},
        {"dangling link",
         [](auto& scene) { scene.home.link("data/journal.jsonl", scene.home.path("nowhere")); }},
        {"hard link",
         [&](auto& scene) {
             scene.home.file("other", line);
             scene.home.hardLink("data/journal.jsonl", "other");
         }},
        {"pipe",
         [](auto& scene) {
             scene.home.folder("data");
             ASSERT_EQ(::mkfifo(scene.path.c_str(), 0600), 0);
         }},
        {"folder", [](auto& scene) { scene.home.folder("data/journal.jsonl"); }},
        {"file in the place of its folder", [](auto& scene) { scene.home.file("data", "x"); }},
    };
    for (const auto& [name, make] : cases) {
        JournalScene scene;
        make(scene);
        const auto preflight = scene.store.preflight();
        EXPECT_FALSE(preflight) << name;
        EXPECT_FALSE(scene.store.append(trashedEntry())) << name;
        EXPECT_FALSE(scene.store.read()) << name;
        EXPECT_TRUE(scene.store.entries().empty()) << name;
        EXPECT_TRUE(preflight.error().words.starts_with(scene.home.path("data"))) << preflight.error().words;
        EXPECT_TRUE(!test::exists(scene.home.path("other"))
                    || std::filesystem::file_size(scene.home.path("other")) == line.size())
            << name;
        EXPECT_FALSE(test::exists(scene.home.path("nowhere"))) << name;
    }
}

TEST(JournalStore, AnotherUsersFileIsRefused) {
    if (!test::isRoot())
        GTEST_SKIP() << "needs root to give a file away";
    JournalScene scene;
    scene.write("");
    ASSERT_EQ(::chown(scene.path.c_str(), 65534, 65534), 0);
    EXPECT_EQ(scene.store.preflight().error().words, scene.path + ": belongs to another user");
    EXPECT_FALSE(scene.store.append(trashedEntry()));
    EXPECT_FALSE(scene.store.read());
    EXPECT_EQ(scene.content(), "");
}

TEST(JournalStore, AnUnwritableFolderIsAnErrorInTheSystemsWords) {
    if (!test::isRoot())
        GTEST_SKIP() << "needs root to become another user";
    JournalScene scene;
    scene.home.folder("data");
    ASSERT_EQ(::chmod(scene.home.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(scene.home.path("data").c_str(), 0555), 0);
    test::inChildProcess([&] {
        test::becomeOtherUser();
        const JournalError expected{.words = scene.path + ": Permission denied", .mayBeRecorded = false};
        EXPECT_EQ(scene.store.preflight(), std::unexpected(expected));
        EXPECT_EQ(scene.store.append(trashedEntry()), std::unexpected(expected));
    });
}

TEST(JournalStore, SeveralProcessesAppendAtOnce) {
    JournalScene scene;
    const std::string large(10'000, 'x'); // so that one line covers several pages
    constexpr std::size_t processes = 4;
    constexpr std::size_t each = 25;
    const auto appendAll = [&](std::size_t process) {
        JournalStore own(scene.path);
        for (std::size_t i = 0; i < each; ++i)
            ASSERT_TRUE(own.preflight() && own.append(skippedEntry(std::to_string(process) + large)));
    };
    test::inChildProcesses(processes, appendAll);
    std::array<std::size_t, processes> counts{};
    for (const auto& entry : scene.store.entries())
        ++counts[static_cast<std::size_t>(entry.title[0] - '0')];
    for (const auto count : counts)
        EXPECT_EQ(count, each);
    EXPECT_EQ(std::ranges::count(scene.content(), '\n'), static_cast<std::ptrdiff_t>(processes * each));
}

TEST(JournalStore, AWriterKilledAtAnyMomentLosesAtMostItsLastLine) {
    JournalScene scene;
    const std::string large(20'000, 'x');
    for (std::size_t lines = 5; lines <= 20; lines += 5) {
        const auto writer = test::startChildProcess([&] {
            while (scene.store.append(skippedEntry(large)))
                ;
        });
        while (scene.content().size() < lines * large.size())
            ;
        test::killChildProcess(writer);
        ASSERT_TRUE(scene.store.append(skippedEntry("after")));
        const auto titles = titlesOf(scene.store.entries());
        EXPECT_EQ(titles.back(), "after");
        const auto unreadable =
            std::ranges::count(scene.content(), '\n') - static_cast<std::ptrdiff_t>(titles.size());
        EXPECT_LE(unreadable, static_cast<std::ptrdiff_t>(lines / 5)) << "one a kill";
    }
}

/// In a child process: lets no file grow beyond this, which makes writes short and then fail.
void limitFiles(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    limit.rlim_cur = bytes;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

TEST(JournalStore, AShortWriteIsReportedAndClosedOffByTheNextAppend) {
    const auto entry = skippedEntry("short");
    const auto length = journalLine(entry)->size() + 1;
    for (const auto room : {std::size_t{0}, std::size_t{1}, length / 2, length - 2, length - 1}) {
        JournalScene scene;
        ASSERT_TRUE(scene.store.append(trashedEntry("before")));
        const auto before = scene.content();
        test::inChildProcess([&] {
            limitFiles(before.size() + room);
            const auto result = scene.store.append(entry);
            ASSERT_FALSE(result);
            EXPECT_EQ(result.error().mayBeRecorded, room == length - 1) << room;
            EXPECT_EQ(scene.content().size(), before.size() + room);
            limitFiles(RLIM_INFINITY);
            ASSERT_TRUE(scene.store.append(skippedEntry("next")));
        });
        EXPECT_TRUE(scene.content().starts_with(before));
        EXPECT_EQ(titlesOf(scene.store.entries()),
                  room == length - 1 ? (Titles{"before", "short", "next"}) : (Titles{"before", "next"}));
    }
}

/// Fills the file system that holds this path to its last byte.
void fillUp(const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT, 0600));
    const std::string block(4096, 'x');
    while (::write(file.get(), block.data(), block.size()) > 0)
        ;
}

TEST(JournalStore, AFullDiskStopsTheMoveAndNeverItsRecord) {
    if (!test::isRoot())
        GTEST_SKIP() << "needs root to mount a small file system";
    JournalScene scene;
    test::inChildProcess([&] {
        test::useOwnMountTable();
        test::mountTmpfs(scene.home.folder("data").c_str());
        ASSERT_TRUE(scene.store.append(trashedEntry("before")));
        ASSERT_TRUE(scene.store.preflight());
        const auto filler = scene.home.path("data/filler");
        fillUp(filler);
        EXPECT_TRUE(scene.store.append(skippedEntry(std::string(50'000, 'x')))) << "room was reserved";
        EXPECT_FALSE(scene.store.preflight()) << "no room for another";
        while (scene.store.append(skippedEntry(std::string(20'000, 'x'))))
            ;
        EXPECT_NE(scene.content().back(), '\n') << "as much of the line as there was room for";
        ASSERT_EQ(::unlink(filler.c_str()), 0);
        EXPECT_TRUE(scene.store.preflight());
        EXPECT_TRUE(scene.store.append(trashedEntry("after")));
        const auto titles = titlesOf(scene.store.entries());
        EXPECT_EQ(titles.front(), "before");
        EXPECT_EQ(titles.back(), "after");
    });
}

} // namespace
} // namespace orbel
