#include "Safety/FileStamp.h"
#include "Safety/StampJson.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {
namespace {

void setModified(const std::string& path, std::int64_t seconds, long nanos) {
    const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, {.tv_sec = seconds, .tv_nsec = nanos}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

FileStamp stampOf(const std::string& path) {
    return FileStamp::of(path).value();
}

TEST(FileStamp, RecordsTheObjectItselfToTheNanosecond) {
    const test::TemporaryFolder home;
    const auto file = home.file("file", 7);
    setModified(file, 1'700'000'000, 123'456'789);
    const auto stamp = stampOf(file);
    EXPECT_EQ(stamp.size, 7u);
    EXPECT_EQ(stamp.modifiedNanos, 1'700'000'000'123'456'789);
    EXPECT_FALSE(stamp.isDirectory);
    EXPECT_EQ(stamp.identity, FileIdentity::of(file));
    setModified(file, -2, 500'000'000);
    EXPECT_EQ(stampOf(file).modifiedNanos, -1'500'000'000) << "before 1970";

    EXPECT_TRUE(stampOf(home.path()).isDirectory);
    const auto link = stampOf(home.link("link", home.path()));
    EXPECT_FALSE(link.isDirectory) << "a link to a folder is no folder";
    EXPECT_NE(link.identity, stampOf(home.path()).identity);
    EXPECT_TRUE(FileStamp::of(home.link("dangling", "/nowhere/at/all")));
    EXPECT_FALSE(FileStamp::of(home.path("missing")));
    EXPECT_FALSE(FileIdentity::of(home.path("file/below")));
}

TEST(FileStamp, EveryChangeOfAFileShows) {
    const FileStamp stamp{.identity = {1, 2}, .size = 3, .modifiedNanos = 4, .isDirectory = false};
    EXPECT_TRUE(stamp.isUnchanged(stamp));
    for (const FileStamp& other : {FileStamp{{9, 2}, 3, 4, false},
                                   {{1, 9}, 3, 4, false},
                                   {{1, 2}, 9, 4, false},
                                   {{1, 2}, 3, 9, false},
                                   {{1, 2}, 3, 4, true}})
        EXPECT_FALSE(stamp.isUnchanged(other));
}

TEST(FileStamp, AReplacedFileIsChangedEvenWithTheSameSizeAndTime) {
    const test::TemporaryFolder home;
    const auto file = home.file("file", "one");
    setModified(file, 1000, 0);
    const auto before = stampOf(file);
    const auto other = home.file("other", "two");
    setModified(other, 1000, 0);
    ASSERT_EQ(::rename(other.c_str(), file.c_str()), 0);
    EXPECT_FALSE(before.isUnchanged(stampOf(file)));
}

TEST(FileStamp, AFolderIsUnchangedWhileItsOwnTimeStands) {
    const test::TemporaryFolder home;
    const auto folder = home.folder("folder");
    setModified(folder, 1000, 0);
    const auto before = stampOf(folder);
    for (int i = 0; i < 300; ++i) // enough names to make the folder's own file grow on common file systems
        home.file("folder/a name that takes some room in the folder " + std::to_string(i));
    EXPECT_FALSE(before.isUnchanged(stampOf(folder)));
    setModified(folder, 1000, 0);
    EXPECT_TRUE(before.isUnchanged(stampOf(folder)));
}

TEST(FileIdentity, HardLinksShareOneIdentityAndHash) {
    const test::TemporaryFolder home;
    const auto first = FileIdentity::of(home.file("first")).value();
    const auto second = FileIdentity::of(home.hardLink("second", "first")).value();
    const auto third = FileIdentity::of(home.file("third")).value();
    const std::unordered_set<FileIdentity> seen{first, second, third};
    EXPECT_EQ(seen.size(), 2u);
    EXPECT_EQ((FileIdentity{16777220, 42}).description(), "16777220:42");
}

TEST(StampJson, RoundTripsTheWholeRange) {
    const FileStamp extreme{
        .identity = {std::numeric_limits<std::uint32_t>::max(), std::numeric_limits<std::uint64_t>::max()},
        .size = std::numeric_limits<std::uint64_t>::max(),
        .modifiedNanos = std::numeric_limits<std::int64_t>::min(),
        .isDirectory = true};
    const nlohmann::json json = extreme;
    EXPECT_EQ(json.dump(),
              R"({"identity":{"device":4294967295,"inode":18446744073709551615},"isDirectory":true,)"
              R"("modifiedNanos":-9223372036854775808,"size":18446744073709551615})");
    EXPECT_EQ(nlohmann::json::parse(json.dump()).get<FileStamp>(), extreme);
}

TEST(StampJson, RejectsWhatIsNotExactlyAStamp) {
    const nlohmann::json good =
        FileStamp{.identity = {1, 2}, .size = 3, .modifiedNanos = 4, .isDirectory = false};
    const std::pair<const char*, nlohmann::json> damages[] = {{"/size", -1},
                                                              {"/size", 1.5},
                                                              {"/size", true},
                                                              {"/size", "3"},
                                                              {"/modifiedNanos", 9223372036854775808ULL},
                                                              {"/isDirectory", 0},
                                                              {"/identity", {1, 2}},
                                                              {"/identity/inode", nullptr}};
    for (const auto& [pointer, value] : damages) {
        auto damaged = good;
        damaged[nlohmann::json::json_pointer(pointer)] = value;
        EXPECT_THROW(damaged.get<FileStamp>(), nlohmann::json::exception) << damaged;
    }
    for (const auto* key : {"identity", "size", "modifiedNanos", "isDirectory"}) {
        auto damaged = good;
        damaged.erase(key);
        EXPECT_THROW(damaged.get<FileStamp>(), nlohmann::json::exception) << key;
    }
}

} // namespace
} // namespace orbel
