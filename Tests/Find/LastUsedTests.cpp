#include "Find/LastUsedReader.h"
#include "Platform/Linux/Portable/RecentlyUsed.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <random>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace orbel {
namespace {

using platform::recentlyUsedIn;
using platform::UseDates;
using test::TemporaryFolder;

Date date(std::string_view text) {
    return parseIso8601(text).value();
}

std::string bookmark(const std::string& path, const std::string& visited) {
    return "<bookmark href=\"file://" + path + "\" added=\"2001-01-01T00:00:00Z\" visited=\"" + visited
           + "\"/>";
}

constexpr std::string_view list = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE xbel>
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks">
  <!-- <bookmark href="file:///comment" added="2020-01-01T00:00:00Z"/> -->
  <![CDATA[<bookmark href="file:///cdata" added="2020-01-01T00:00:00Z"/>]]>
  <bookmark href="file:///a%20b&amp;c/&#x64;&#39;&quot;.pdf" added="2020-01-01T00:00:00Z"
            modified = '2022-03-04T05:06:07.999999Z' visited="2021-01-01T00:00:00Z" >
    <info><metadata owner="http://freedesktop.org"><bookmark:applications/></metadata></info>
  </bookmark>
  <bookmark visited="2020-01-01T00:00:00Z" href="file:///twice"/>
  <bookmark visited="2019-01-01T00:00:00Z" href="file:///twice"></bookmark>
  <bookmark href="sftp://host/x" visited="2020-01-01T00:00:00Z"/>
  <bookmark href="file:///bad&entity;" visited="2020-01-01T00:00:00Z"/>
  <bookmark href="file:///undated" visited="yesterday" added="2020-01-01T00:00:00.Z" modified=""/>
</xbel>)";

TEST(RecentlyUsed, TellsTheLatestDateOfEachLocalFile) {
    EXPECT_EQ(recentlyUsedIn(list), (UseDates{{"/a b&c/d'\".pdf", date("2022-03-04T05:06:07Z")},
                                              {"/twice", date("2020-01-01T00:00:00Z")}}));
}

TEST(RecentlyUsed, TakesNothingWrongFromABrokenList) {
    const auto whole = recentlyUsedIn(list);
    const auto isPartOfWhole = [&](const UseDates& part) {
        return std::ranges::all_of(part, [&](const auto& entry) {
            const auto found = whole.find(entry.first);
            return found != whole.end() && found->second >= entry.second;
        });
    };
    for (std::size_t length = 0; length <= list.size(); ++length)
        EXPECT_TRUE(isPartOfWhole(recentlyUsedIn(list.substr(0, length)))) << length;

    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) { // must end, and touch nothing outside the text
        std::string text(list);
        for (int change = 0; change < 8; ++change)
            text[random() % text.size()] = "<>\"'&;=/!-% \0\xFF"[random() % 14];
        recentlyUsedIn(text);
    }
    std::string deep;
    for (int i = 0; i < 200'000; ++i)
        deep += "<a b='<'>&";
    EXPECT_EQ(recentlyUsedIn(deep + bookmark("/x", "2020-01-01T00:00:00Z")).size(), 1);
    EXPECT_TRUE(recentlyUsedIn("<!--" + deep + bookmark("/x", "2020-01-01T00:00:00Z")).empty());
}

/// A home with a list of recently used files.
class LastUsedTest : public ::testing::Test {
protected:
    void SetUp() override {
        struct statvfs volume {};
        if (::getenv("XDG_DATA_HOME") != nullptr || ::statvfs(home.path().c_str(), &volume) != 0
            || (volume.f_flag & ST_NOATIME) != 0)
            GTEST_SKIP() << "needs access times and the usual place of the list";
    }

    std::string file(const std::string& name, std::string_view accessed, std::string_view modified) const {
        auto path = home.file(name);
        const auto time = [](std::string_view text) {
            const auto sinceEpoch = date(text).time_since_epoch();
            return timespec{std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch).count(), 0};
        };
        const std::array<timespec, 2> times{time(accessed), time(modified)};
        EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
        return path;
    }
    std::string list() const { return ".local/share/recently-used.xbel"; }
    LastUsed read(const std::string& path) const {
        return LastUsedReader(home.path()).read(path, date("2010-01-01T00:00:00Z"));
    }

    TemporaryFolder home;
};

TEST_F(LastUsedTest, TakesTheLatestThatSpeaksOfAUse) {
    const auto idle = file("idle", "2015-01-01T00:00:00Z", "2015-01-01T00:00:00Z");
    const auto accessed = file("accessed", "2020-01-01T00:00:00Z", "2015-01-01T00:00:00Z");
    const auto listed = file("listed", "2018-01-01T00:00:00Z", "2015-01-01T00:00:00Z");
    const auto edited = file("edited", "2015-01-01T00:00:00Z", "2021-01-01T00:00:00Z");
    home.file(list(), bookmark(listed, "2019-01-01T00:00:00Z") + bookmark(accessed, "2019-01-01T00:00:00Z")
                          + bookmark(edited, "2019-01-01T00:00:00Z"));
    const auto opened = [](std::string_view text, LastUsed::Record record) {
        return LastUsed{.date = date(text), .source = LastUsed::Source::lastOpened, .record = record};
    };
    EXPECT_EQ(read(listed), opened("2019-01-01T00:00:00Z", LastUsed::Record::usageIndex));
    EXPECT_EQ(read(accessed), opened("2020-01-01T00:00:00Z", LastUsed::Record::accessTime));
    for (const auto& path : {idle, edited, home.path("missing")})
        EXPECT_EQ(read(path), (LastUsed{.date = date("2010-01-01T00:00:00Z")})) << path;
    home.file("package/x");
    std::filesystem::directory_iterator(home.path("package")); // as the scan does
    EXPECT_EQ(read(home.path("package")).source, LastUsed::Source::lastModified);
}

TEST_F(LastUsedTest, IsNotHeldUpByWhatLiesInPlaceOfTheList) {
    const auto idle = file("idle", "2015-01-01T00:00:00Z", "2015-01-01T00:00:00Z");
    home.folder(".local/share");
    ASSERT_EQ(::mkfifo(home.path(list()).c_str(), 0600), 0);
    EXPECT_EQ(read(idle).source, LastUsed::Source::lastModified);
    std::filesystem::remove(home.path(list()));
    home.folder(list());
    EXPECT_EQ(read(idle).source, LastUsed::Source::lastModified);
}

TEST(LastUsed, IsNotBeforeAFileWasMadeWhereNoAccessTimesAreKept) {
    if (!test::isRoot())
        GTEST_SKIP() << "mounting needs root";
    const TemporaryFolder home;
    EXPECT_TRUE(test::inChildProcess([&] {
        test::useOwnMountTable();
        ASSERT_EQ(::mount("tmpfs", home.path().c_str(), "tmpfs", MS_NOATIME, "size=1m"), 0);
        const auto copied = home.file("copied");
        const auto edited = home.file("edited");
        const auto setModified = [](const std::string& path, std::time_t modified) {
            const std::array times{timespec{0, UTIME_OMIT}, timespec{modified, 0}};
            EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
        };
        setModified(copied, 1'400'000'000);
        setModified(edited, std::time(nullptr) + 1000);
        struct statx made {};
        ASSERT_EQ(::statx(AT_FDCWD, copied.c_str(), 0, STATX_BTIME, &made), 0);
        if ((made.stx_mask & STATX_BTIME) == 0)
            GTEST_SKIP() << "this kernel keeps no birth times in memory";
        const LastUsedReader reader(home.path());
        const auto modified = date("2014-05-13T00:00:00Z");
        const auto found = reader.read(copied, modified);
        EXPECT_EQ(found.record, LastUsed::Record::creationTime);
        EXPECT_EQ(found.source, LastUsed::Source::lastModified) << "nobody opened it";
        EXPECT_GT(found.date, date("2025-01-01T00:00:00Z"));
        EXPECT_EQ(reader.read(edited, modified), (LastUsed{.date = modified}));
    }));
}

} // namespace
} // namespace orbel
