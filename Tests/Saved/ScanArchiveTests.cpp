#include "Saved/ScanArchive.h"
#include "Saved/ScanThinning.h"
#include "Support/FlushHook.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>

#include <sys/stat.h>

namespace orbel {
namespace {

using std::chrono::days;
using std::chrono::hours;
using test::TemporaryFolder;
using test::TreeBuilder;

constexpr Date monday{std::chrono::sys_days(std::chrono::year(2025) / 11 / 17)};

FileTree dataTree(std::uint64_t bytes, const std::string& root = "/data") {
    TreeBuilder builder(root);
    builder.file(builder.folder(0, "films"), "file", bytes);
    return builder.build();
}

std::expected<void, std::string> keepAt(const ScanArchive& archive, const FileTree& tree, Date moment) {
    ScanOrigin origin;
    origin.measuredAt = moment;
    return archive.keep(tree, origin, moment);
}

std::vector<std::uint64_t> keptBytes(const ScanArchive& archive, const std::string& root = "/data") {
    std::vector<std::uint64_t> bytes;
    for (const auto& entry : archive.of(root))
        bytes.push_back(entry.header.allocatedBytes);
    return bytes;
}

mode_t modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

using Sizes = std::vector<std::uint64_t>;

TEST(ScanArchive, KeepsTheScansOfEachRoot) {
    const TemporaryFolder home;
    const ScanArchive archive(home.path("data/scans"));
    EXPECT_FALSE(archive.newest("/data", {}));
    const auto summary = home.file("data/growth/0123456789abcdef.json");
    const auto other = home.file("data/growth/mine.json");
    ASSERT_TRUE(keepAt(archive, dataTree(1000), monday));
    EXPECT_FALSE(std::filesystem::exists(summary)) << "of a version that kept less";
    EXPECT_TRUE(std::filesystem::exists(other));
    ASSERT_TRUE(keepAt(archive, dataTree(9000, "/other"), monday + hours(1)));
    ASSERT_TRUE(keepAt(archive, dataTree(2000), monday + hours(2)));
    EXPECT_EQ(keptBytes(archive), (Sizes{2000, 1000})) << "the newest first";
    EXPECT_EQ(archive.newest("/data", {})->tree.allocated(0), 2000);
    EXPECT_EQ(archive.newest("/data", {})->origin.measuredAt, monday + hours(2));
    EXPECT_EQ(archive.newest("/data", {}, monday + hours(2))->tree.allocated(0), 1000) << "made before";
    EXPECT_EQ(modeOf(home.path("data/scans")), 0700);
    const auto entry = archive.of("/other").at(0);
    EXPECT_EQ(modeOf(entry.path), 0600);
    EXPECT_EQ(entry.header.entries, 3);
    EXPECT_EQ(archive.read(entry)->tree.rootPath, "/other");

    TreeBuilder closed("/data");
    closed.tree.nodeFlags[0] |= NodeFlags{NodeFlags::unreadable}.rawValue;
    for (const auto& tree : {FileTree("/data"), closed.build()})
        EXPECT_TRUE(keepAt(archive, tree, monday + hours(3)));
    const test::FlushHook hook([](const test::Flush&) { return EIO; });
    EXPECT_FALSE(keepAt(archive, dataTree(3000), monday + hours(4)));
    EXPECT_EQ(keptBytes(archive), (Sizes{2000, 1000}));

    EXPECT_EQ(archive.size().scans, 3);
    home.file("data/scans/mine.scan");
    EXPECT_TRUE(archive.clear());
    EXPECT_EQ(archive.size(), ScanArchive::Size());
    EXPECT_EQ(modeOf(home.path("data/scans/mine.scan")) & 0400U, 0400) << "not a scan that it kept";
}

TEST(ScanArchive, ComparesOnlyScansThatLeftOutTheSame) {
    const TemporaryFolder home;
    const ScanArchive archive(home.path("scans"));
    auto less = dataTree(1000);
    less.exclusions.patterns = {"b", "a"};
    ASSERT_TRUE(keepAt(archive, less, monday));
    ASSERT_TRUE(keepAt(archive, dataTree(3000), monday + hours(1)));
    EXPECT_EQ(archive.newest("/data", {"a", "b", "a"})->tree.allocated(0), 1000);
    EXPECT_FALSE(archive.newest("/data", {"a"}));
    ASSERT_TRUE(keepAt(archive, dataTree(4000), monday + hours(2)));
    ASSERT_TRUE(keepAt(archive, dataTree(5000), monday + hours(3)));
    EXPECT_EQ(keptBytes(archive), (Sizes{5000, 4000, 1000})) << "each is thinned by itself";
}

TEST(ScanArchive, BelievesOnlyWholeFilesOfThisUser) {
    const TemporaryFolder home;
    const ScanArchive archive(home.path("scans"));
    ASSERT_TRUE(keepAt(archive, dataTree(1000), monday));
    ASSERT_TRUE(keepAt(archive, dataTree(2000), monday + hours(1)));
    const auto path = archive.of("/data").at(0).path;
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    ASSERT_EQ(::truncate(path.c_str(), status.st_size - 1), 0);
    EXPECT_EQ(archive.newest("/data", {})->tree.allocated(0), 1000) << "the one before is whole";
    EXPECT_FALSE(archive.read(archive.of("/data").at(0)));
    ASSERT_EQ(::truncate(path.c_str(), 40), 0);
    EXPECT_EQ(keptBytes(archive), Sizes{1000});

    const auto older = archive.of("/data").at(0).path;
    ASSERT_EQ(::rename(older.c_str(), path.c_str()), 0);
    home.link("scans/" + older.substr(older.rfind('/') + 1), path);
    EXPECT_EQ(keptBytes(archive), Sizes{1000}) << "the file, not the link to it";
    home.hardLink("second", "scans/" + path.substr(path.rfind('/') + 1));
    EXPECT_EQ(keptBytes(archive), Sizes()) << "something else has a name of it too";
}

TEST(ScanArchive, TakesNoMoreThanItMay) {
    const TemporaryFolder home;
    ASSERT_TRUE(keepAt(ScanArchive(home.path("scans")), dataTree(1), monday));
    const auto each = ScanArchive(home.path("scans")).size().bytes;
    const ScanArchive archive(home.path("scans"), 3 * each + each / 2);
    for (int i = 1; i <= 3; ++i)
        ASSERT_TRUE(keepAt(archive, dataTree(2, "/root" + std::to_string(i)), monday + days(i)));
    EXPECT_EQ(archive.size().scans, 3);
    EXPECT_EQ(keptBytes(archive), Sizes()) << "the oldest of all roots goes first";
    ASSERT_TRUE(keepAt(archive, dataTree(5), monday - days(9)));
    EXPECT_EQ(keptBytes(archive), Sizes{5}) << "never the one that was just added";

    const auto tooLarge = keepAt(ScanArchive(home.path("scans"), 40), dataTree(7), monday);
    ASSERT_FALSE(tooLarge);
    EXPECT_TRUE(tooLarge.error().ends_with("all kept scans together may take 40 B")) << tooLarge.error();
    EXPECT_EQ(archive.size().scans, 3);
}

TEST(ScanThinning, KeepsDaysThenWeeksThenMonths) {
    // A scan every eight hours for two years, thinned after each and thinned only once.
    std::vector<Date> everyTime;
    std::vector<Date> all;
    const auto end = monday + hours(15);
    for (auto moment = end - days(730); moment <= end; moment += hours(8)) {
        everyTime.insert(everyTime.begin(), moment);
        all.insert(all.begin(), moment);
        const auto expired = expiredScans(everyTime, moment);
        for (const auto index : std::vector(expired.rbegin(), expired.rend()))
            everyTime.erase(everyTime.begin() + static_cast<std::ptrdiff_t>(index));
    }
    const auto expired = expiredScans(all, end);
    std::vector<std::string> kept;
    for (std::size_t i = 0; i < all.size(); ++i)
        if (!std::ranges::binary_search(expired, i))
            kept.push_back(iso8601(all[i]).substr(0, 13));
    EXPECT_EQ(kept, (std::vector<std::string>{
                        "2025-11-17T15", "2025-11-17T07", "2025-11-16T23", "2025-11-15T23", "2025-11-14T23",
                        "2025-11-13T23", "2025-11-12T23", "2025-11-11T23", "2025-11-10T23", "2025-11-09T23",
                        "2025-11-02T23", "2025-10-26T23", "2025-10-20T23", "2025-09-30T23", "2025-08-31T23",
                        "2025-07-31T23", "2025-06-30T23", "2025-05-31T23", "2025-04-30T23", "2025-03-31T23",
                        "2025-02-28T23", "2025-01-31T23", "2024-12-31T23"}));
    std::vector<std::string> thinnedEveryTime;
    for (const auto moment : everyTime)
        thinnedEveryTime.push_back(iso8601(moment).substr(0, 13));
    EXPECT_EQ(thinnedEveryTime.size(), kept.size());
    EXPECT_TRUE(expiredScans(std::vector{monday - days(800), monday - days(900)}, monday).empty())
        << "the last two stay, however old";
    EXPECT_EQ(expiredScans(std::vector{monday + days(9), monday + days(9), monday + days(9)}, monday),
              std::vector<std::size_t>{2})
        << "made by a clock that was wrong";
}

} // namespace
} // namespace orbel
